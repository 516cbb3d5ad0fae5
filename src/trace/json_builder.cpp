#include "trace/json_builder.h"

#include <cstring>
#include <memory>

#include "trace/byte_words.h"

char* JsonBuilder::room(std::size_t length)
{
    if (capacity_ - used_ < length) {
        std::size_t capacity = capacity_ * 2 > used_ + length ? capacity_ * 2 : used_ + length + 4096;
        auto data = std::make_unique_for_overwrite<char[]>(capacity);
        if (used_) std::memcpy(data.get(), data_.get(), used_);
        data_ = std::move(data);
        capacity_ = capacity;
    }
    return data_.get() + used_;
}

void JsonBuilder::put(char c)
{
    *room(1) = c;
    ++used_;
}

void JsonBuilder::putString(std::string_view text)
{
    char* end = writeJsonString(room(kMostJsonStringBytes(text.size())), text);
    used_ = static_cast<std::size_t>(end - data_.get());
}

void JsonBuilder::begin()
{
    start_ = used_;
    renamed_.clear();
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
    if (!level.isObject && !level.empty) put(',');
    level.empty = false;
    keyPending_ = false;
}

void JsonBuilder::openObject()
{
    beforeValue();
    put('{');
    levels_.push_back({true, true, keyCount_, 0});
}

void JsonBuilder::openArray()
{
    beforeValue();
    put('[');
    levels_.push_back({false, true, keyCount_, 0});
}

void JsonBuilder::close()
{
    if (levels_.empty()) return;
    if (keyPending_) stringValue("");
    Level level = levels_.back();
    levels_.pop_back();
    keyCount_ = level.firstKey;
    put(level.isObject ? '}' : ']');
}

void JsonBuilder::closeAll()
{
    while (!levels_.empty()) close();
}

namespace {

// A bit per name, so that most names are known to be new without a search.
std::uint64_t nameBit(std::string_view name)
{
    std::size_t mix = name.size() * 7 + (name.empty() ? 0 : static_cast<unsigned char>(name.front()) +
                                                                 static_cast<unsigned char>(name.back()) * 3);
    return std::uint64_t{1} << (mix & 63);
}

} // namespace

void JsonBuilder::key(std::string_view name)
{
    if (!inObject()) return;
    if (keyPending_) stringValue("");
    Level& level = levels_.back();
    if (!level.empty) put(',');
    level.empty = false;

    if (keyCount_ == keys_.size()) keys_.emplace_back();
    Key& entry = keys_[keyCount_];
    entry.given = name;
    entry.written = name;
    std::uint64_t bit = nameBit(name);
    if (level.names & bit) {
        const std::size_t end = keyCount_;
        auto used = [&](std::string_view written) {
            for (std::size_t i = level.firstKey; i < end; ++i)
                if (keys_[i].written == written) return true;
            return false;
        };
        int copy = 1;
        for (std::size_t i = level.firstKey; i < end; ++i)
            if (keys_[i].given == name) ++copy;
        if (copy > 1 || used(name)) {
            if (copy < 2) copy = 2;
            std::string& renamed = renamed_.emplace_back();
            do {
                renamed.assign(name);
                renamed += " (" + std::to_string(copy++) + ")";
            } while (used(renamed));
            entry.written = renamed;
        }
    }
    level.names |= bit | nameBit(entry.written);
    ++keyCount_;
    putString(entry.written);
    put(':');
    keyPending_ = true;
}

void JsonBuilder::stringValue(std::string_view text)
{
    beforeValue();
    putString(text);
}

void JsonBuilder::looseValue(std::string_view text)
{
    beforeValue();
    if (isJsonNumber(text)) {
        std::memcpy(room(text.size()), text.data(), text.size());
        used_ += text.size();
    } else {
        putString(text);
    }
}

namespace {

constexpr int kDeepestStrictNesting = 32;
constexpr std::size_t kMostStrictNames = 512;


// Copies text[from, from + length), a short piece in one 16-byte move
// where the text allows (the room has 16 bytes to spare).
char* copyPiece(char* to, std::string_view text, std::size_t from, std::size_t length)
{
    if (length <= 16 && from + 16 <= text.size())
        std::memcpy(to, text.data() + from, 16);
    else
        std::memcpy(to, text.data() + from, length);
    return to + length;
}

// A strict JSON string at text[at] == '"' with only ASCII inside; returns
// the index after its closing quote, or 0.
std::size_t strictStringEnd(std::string_view text, std::size_t at)
{
    for (std::size_t i = at + 1; i < text.size(); ++i) {
        // Plain ASCII is passed over a word at a time.
        while (i + 8 <= text.size()) {
            std::size_t plain = firstMarked(markNotPlain(loadWord(text.data() + i)));
            i += plain;
            if (plain < 8) break;
        }
        if (i >= text.size()) return 0;
        auto byte = static_cast<unsigned char>(text[i]);
        if (byte == '"') return i + 1;
        if (byte < 0x20 || byte >= 0x7F) return 0;
        if (byte != '\\') continue;
        char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == 'u') {
            if (i + 5 >= text.size() || !isHexDigit(text[i + 2]) || !isHexDigit(text[i + 3]) || !isHexDigit(text[i + 4]) ||
                !isHexDigit(text[i + 5]))
                return 0;
            i += 5;
        } else if (next == '"' || next == '\\' || next == '/' || next == 'b' || next == 'f' || next == 'n' ||
                   next == 'r' || next == 't') {
            ++i;
        } else {
            return 0;
        }
    }
    return 0;
}

// A strict JSON number at text[at]; returns the index after it, or 0.
std::size_t strictNumberEnd(std::string_view text, std::size_t at)
{
    // Most are whole numbers without a leading zero.
    std::size_t digits = at + (text[at] == '-');
    std::size_t i = digits;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') ++i;
    bool whole = i > digits && (text[digits] != '0' || i == digits + 1);
    if (whole && (i == text.size() || (text[i] != '.' && text[i] != 'e' && text[i] != 'E' && text[i] != '-' &&
                                       text[i] != '+')))
        return i;

    i = at;
    while (i < text.size() && ((text[i] >= '0' && text[i] <= '9') || text[i] == '-' || text[i] == '+' ||
                               text[i] == '.' || text[i] == 'e' || text[i] == 'E'))
        ++i;
    return i > at && isJsonNumber(text.substr(at, i - at)) ? i : 0;
}

} // namespace

JsonBuilder::Copied JsonBuilder::copyStrictMembers(std::string_view text, std::size_t& at, MemberHook onMember, void* context)
{
    if (!inObject() || keyPending_ || at >= text.size() || text[at] != '{') return Copied::None;
    Level& outer = levels_.back();
    // Without white space the copy is never longer than the text; short
    // pieces are moved 16 bytes at a time, so 16 bytes more.
    char* const start = room(text.size() - at + 1 + 16);
    char* o = start;
    if (!outer.empty) *o++ = ',';

    struct Open {
        bool isObject;
        std::size_t firstName; // into names
        std::uint64_t bits;
    };
    Open open[kDeepestStrictNesting + 1];
    int depth = 0;
    open[0] = {true, 0, outer.names};
    if (strictNames_.size() < kMostStrictNames) strictNames_.resize(kMostStrictNames);
    std::string_view* names = strictNames_.data();
    std::size_t nameCount = 0;
    std::string_view name;         // the last name of the members level
    enum { NameOrClose, Name, Colon, Value, ValueOrClose, CommaOrClose } expect = NameOrClose;
    bool nested = false;           // a container was opened
    std::size_t lastValueEnd = 0;  // after the last plain value
    bool lastValueIsString = false;
    std::size_t indent = 0;        // of the last line break passed

    // A plain value: a string or a number.
    auto copyPlainValue = [&](std::size_t& i, char c) {
        std::size_t end = c == '"' ? strictStringEnd(text, i) : strictNumberEnd(text, i);
        if (end == 0) return false;
        o = copyPiece(o, text, i, end - i);
        if (depth == 0 && onMember)
            onMember(context, name, c == '"' ? text.substr(i + 1, end - i - 2) : text.substr(i, end - i));
        lastValueEnd = end;
        lastValueIsString = c == '"';
        i = end;
        expect = CommaOrClose;
        return true;
    };

    // What is copied: the names of the members level join the current object.
    auto keep = [&] {
        if (nameCount == 0) {
            o = start; // an empty object adds nothing, not even the comma
        } else {
            outer.empty = false;
            outer.names = open[0].bits;
        }
        for (std::size_t n = 0; n < nameCount; ++n) {
            if (keyCount_ == keys_.size()) keys_.emplace_back();
            keys_[keyCount_++] = {names[n], names[n]};
        }
        used_ += static_cast<std::size_t>(o - start);
    };

    // Text that is not strict at `stop`. The members before it are kept
    // when a tolerant reader would have written them alike: plain members
    // only, without backslashes, the last value ending where it would end
    // it, and `stop` just after a complete member.
    auto stopAt = [&](std::size_t stop) {
        if (depth != 0 || expect != CommaOrClose || nested ||
            std::memchr(text.data() + at, '\\', stop - at) != nullptr)
            return Copied::None;
        std::size_t next = lastValueEnd;
        while (next < text.size() && (text[next] == ' ' || text[next] == '\t')) ++next;
        if (next < text.size() && !(lastValueIsString ? endsQuotedText(text[next]) : endsBareValue(text[next])))
            return Copied::None;
        keep();
        at = stop;
        return Copied::Front;
    };

    std::size_t i = at + 1;
    for (;;) {
        if (i < text.size() && static_cast<unsigned char>(text[i]) <= ' ') {
            std::size_t from = i;
            i = afterBlanks(text, i, false);
            if (text[from] == '\n') indent = i - from - 1;
        }
        if (i >= text.size()) return stopAt(i);
        char c = text[i];
        Open& top = open[depth];
        if (c == '}' || c == ']') {
            if ((c == '}') != top.isObject) return stopAt(i);
            if (expect == (top.isObject ? Name : Value))
                --o; // a comma before the closing bracket is left out
            else if (expect != CommaOrClose && expect != (top.isObject ? NameOrClose : ValueOrClose))
                return stopAt(i);
            ++i;
            if (depth == 0) break;
            nameCount = top.firstName;
            *o++ = c;
            --depth;
            expect = CommaOrClose;
            continue;
        }
        if (c == ',') {
            if (expect != CommaOrClose) return stopAt(i);
            *o++ = ',';
            ++i;
            expect = top.isObject ? Name : Value;
            continue;
        }
        if (c == ':') {
            if (expect != Colon) return stopAt(i);
            *o++ = ':';
            ++i;
            expect = Value;
            continue;
        }
        if (expect == Name || expect == NameOrClose) {
            std::size_t end = c == '"' ? strictStringEnd(text, i) : 0;
            if (end == 0) return stopAt(i);
            std::string_view key = text.substr(i + 1, end - i - 2);
            std::uint64_t bit = nameBit(key);
            if (top.bits & bit) {
                for (std::size_t n = top.firstName; n < nameCount; ++n)
                    if (names[n] == key) return stopAt(i);
                if (depth == 0)
                    for (std::size_t n = outer.firstKey; n < keyCount_; ++n)
                        if (keys_[n].written == key) return stopAt(i);
            }
            if (nameCount == kMostStrictNames) return stopAt(i);
            top.bits |= bit;
            names[nameCount++] = key;
            if (depth == 0) name = key;
            o = copyPiece(o, text, i, end - i);
            i = end;
            expect = Colon;
            // Most members are "name": value, read in one go.
            if (i + 2 < text.size() && text[i] == ':' && text[i + 1] == ' ') {
                char v = text[i + 2];
                if (v == '"' || v == '-' || (v >= '0' && v <= '9')) {
                    *o++ = ':';
                    i += 2;
                    if (!copyPlainValue(i, v)) return stopAt(i);
                    if (i < text.size() && text[i] == ',') {
                        *o++ = ',';
                        ++i;
                        expect = Name;
                        // The next member most often starts the next line,
                        // indented as this one.
                        if (startsIndentedName(text, i, indent)) i += 1 + indent;
                    }
                }
            }
            continue;
        }
        if (expect != Value && expect != ValueOrClose) return stopAt(i);
        if (c == '{' || c == '[') {
            if (depth == kDeepestStrictNesting) return stopAt(i);
            *o++ = c;
            ++i;
            open[++depth] = {c == '{', nameCount, 0};
            nested = true;
            expect = c == '{' ? NameOrClose : ValueOrClose;
            continue;
        }
        if (!copyPlainValue(i, c)) return stopAt(i);
    }

    keep();
    at = i;
    return Copied::Whole;
}
