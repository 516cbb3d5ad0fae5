#include "trace/json_text.h"

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";

void appendEscapedByte(std::string& out, unsigned char byte)
{
    out += "\\u00";
    out += kHexDigits[byte >> 4];
    out += kHexDigits[byte & 15];
}

bool isHex(char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

// Length of the well-formed UTF-8 sequence at `at`, or 0.
std::size_t utf8Length(std::string_view text, std::size_t at)
{
    auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char lead = byte(at);
    std::size_t length = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 && lead < 0xE0 ? 2 : 0;
    if (length == 0 || lead > 0xF4 || at + length > text.size()) return 0;
    unsigned char second = byte(at + 1);
    // Overlong forms, surrogates and values above U+10FFFF.
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) || (lead == 0xF0 && second < 0x90) ||
        (lead == 0xF4 && second > 0x8F))
        return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(at + i) & 0xC0) != 0x80) return 0;
    return length;
}

} // namespace

void appendJsonString(std::string& out, std::string_view text)
{
    out += '"';
    for (std::size_t i = 0; i < text.size(); ++i) {
        char c = text[i];
        auto byte = static_cast<unsigned char>(c);
        if (c == '\\') {
            char next = i + 1 < text.size() ? text[i + 1] : '\0';
            bool pair = next == '"' || next == '\\' || next == '/' || next == 'b' || next == 'f' || next == 'n' ||
                        next == 'r' || next == 't';
            bool unicode = next == 'u' && i + 5 < text.size() && isHex(text[i + 2]) && isHex(text[i + 3]) &&
                           isHex(text[i + 4]) && isHex(text[i + 5]);
            if (pair || unicode) {
                out.append(text.data() + i, unicode ? 6 : 2);
                i += unicode ? 5 : 1;
            } else {
                out += "\\\\";
            }
        } else if (c == '"') {
            out += "\\\"";
        } else if (byte < 0x20 || byte == 0x7F) {
            appendEscapedByte(out, byte);
        } else if (byte < 0x80) {
            out += c;
        } else if (std::size_t length = utf8Length(text, i)) {
            out.append(text.data() + i, length);
            i += length - 1;
        } else {
            appendEscapedByte(out, byte);
        }
    }
    out += '"';
}

bool isJsonNumber(std::string_view text)
{
    std::size_t i = 0, n = text.size();
    auto digits = [&] {
        std::size_t from = i;
        while (i < n && text[i] >= '0' && text[i] <= '9') ++i;
        return i > from;
    };
    if (i < n && text[i] == '-') ++i;
    if (i < n && text[i] == '0') {
        ++i;
    } else if (!digits()) {
        return false;
    }
    if (i < n && text[i] == '.') {
        ++i;
        if (!digits()) return false;
    }
    if (i < n && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < n && (text[i] == '+' || text[i] == '-')) ++i;
        if (!digits()) return false;
    }
    return i == n;
}

bool parseUnsigned(std::string_view text, std::uint64_t& value)
{
    if (text.empty() || text.size() > 20) return false;
    std::uint64_t result = 0;
    for (char c : text) {
        if (c < '0' || c > '9') return false;
        std::uint64_t digit = static_cast<std::uint64_t>(c - '0');
        if (result > (UINT64_MAX - digit) / 10) return false;
        result = result * 10 + digit;
    }
    value = result;
    return true;
}

void appendMicroseconds(std::string& out, std::uint64_t nanoseconds)
{
    char text[32];
    char* at = text + sizeof text;
    std::uint64_t fraction = nanoseconds % 1000;
    for (int i = 0; i < 3; ++i, fraction /= 10) *--at = static_cast<char>('0' + fraction % 10);
    *--at = '.';
    std::uint64_t whole = nanoseconds / 1000;
    do {
        *--at = static_cast<char>('0' + whole % 10);
        whole /= 10;
    } while (whole != 0);
    out.append(at, static_cast<std::size_t>(text + sizeof text - at));
}

void JsonBuilder::begin(std::string* out)
{
    out_ = out;
    levels_.clear();
    keyCount_ = 0;
    keyPending_ = false;
    openObject();
}

void JsonBuilder::beforeValue()
{
    if (levels_.empty()) return;
    Level& level = levels_.back();
    if (level.isObject && !keyPending_) key(""); // a value needs a name inside an object
    if (!level.isObject && !level.empty) *out_ += ',';
    level.empty = false;
    keyPending_ = false;
}

void JsonBuilder::openObject()
{
    beforeValue();
    *out_ += '{';
    levels_.push_back({true, true, keyCount_});
}

void JsonBuilder::openArray()
{
    beforeValue();
    *out_ += '[';
    levels_.push_back({false, true, keyCount_});
}

void JsonBuilder::close()
{
    if (levels_.empty()) return;
    if (keyPending_) stringValue("");
    Level level = levels_.back();
    levels_.pop_back();
    keyCount_ = level.firstKey;
    *out_ += level.isObject ? '}' : ']';
}

void JsonBuilder::closeAll()
{
    while (!levels_.empty()) close();
}

void JsonBuilder::key(std::string_view name)
{
    if (!inObject()) return;
    if (keyPending_) stringValue("");
    Level& level = levels_.back();
    if (!level.empty) *out_ += ',';
    level.empty = false;

    const std::size_t end = keyCount_;
    auto used = [&](std::string_view written) {
        for (std::size_t i = level.firstKey; i < end; ++i)
            if (keys_[i].written == written) return true;
        return false;
    };
    int copy = 1;
    for (std::size_t i = level.firstKey; i < end; ++i)
        if (keys_[i].given == name) ++copy;
    if (keyCount_ == keys_.size()) keys_.emplace_back();
    Key& entry = keys_[keyCount_++];
    entry.given.assign(name);
    entry.written.assign(name);
    if (copy > 1 || used(entry.written)) {
        if (copy < 2) copy = 2;
        do {
            entry.written.assign(name);
            entry.written += " (" + std::to_string(copy++) + ")";
        } while (used(entry.written));
    }
    appendJsonString(*out_, entry.written);
    *out_ += ':';
    keyPending_ = true;
}

void JsonBuilder::stringValue(std::string_view text)
{
    beforeValue();
    appendJsonString(*out_, text);
}

void JsonBuilder::looseValue(std::string_view text)
{
    beforeValue();
    if (isJsonNumber(text))
        *out_ += text;
    else
        appendJsonString(*out_, text);
}
