// Strictly valid JSON text built from the tool's own loose text: string
// escaping, the number test for unquoted values, and a builder that places
// commas and closes what is left open, whatever order its input comes in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Appends `text` as a quoted JSON string. Valid escape pairs are kept, a
// lone backslash, a quote, control characters and bytes that are not UTF-8
// are escaped (a stray byte as the code point of the same value).
void appendJsonString(std::string& out, std::string_view text);

// The same into room for at least kMostJsonStringBytes(text.size()) bytes;
// returns the end of what it wrote.
char* writeJsonString(char* at, std::string_view text);
constexpr std::size_t kMostJsonStringBytes(std::size_t textLength) { return textLength * 6 + 2; }

// True when `text` is a JSON number exactly as it stands.
bool isJsonNumber(std::string_view text);

// Reads unsigned decimal digits (a quoted value's content too); false for
// anything else or a value above 2^64 - 1.
bool parseUnsigned(std::string_view text, std::uint64_t& value);

// Appends nanoseconds as microseconds with exactly three decimals.
void appendMicroseconds(std::string& out, std::uint64_t nanoseconds);

class JsonBuilder {
public:
    // Starts an object that every later call adds to, in the builder's own
    // buffer; text() is the JSON written since.
    void begin();
    std::string_view text() const { return {data_.get(), used_}; }
    void openObject();
    void openArray();
    void close();
    void closeAll();
    std::size_t depth() const { return levels_.size(); }
    bool inObject() const { return !levels_.empty() && levels_.back().isObject; }

    // A member name of the current object; a name already used in the same
    // object gets " (2)", " (3)", ... so that every name stays unique. The
    // name's text must stay in place until the object is closed.
    void key(std::string_view name);
    void stringValue(std::string_view text);
    // A number as it stands, anything else as a string.
    void looseValue(std::string_view text);

    // The quick way for text that is already strict JSON: at text[at] an
    // object whose members are added to the current object, as they stand
    // but for white space. Calls onMember for each of its members with a
    // plain value (a string's text without quotes). False, with nothing
    // added and `at` unchanged, when the object is not strict JSON with
    // unique names, or its names repeat those of the current object.
    using MemberHook = void (*)(void* context, std::string_view name, std::string_view value);
    bool copyStrictMembers(std::string_view text, std::size_t& at, MemberHook onMember, void* context);

private:
    struct Level {
        bool isObject;
        bool empty;
        std::size_t firstKey; // into keys_
        std::uint64_t names;  // a bit per name used, see nameBit
    };
    void beforeValue();
    char* room(std::size_t length);
    void put(char c);
    void putString(std::string_view text);

    std::unique_ptr<char[]> data_;
    std::size_t used_ = 0;
    std::size_t capacity_ = 0;
    std::vector<Level> levels_;
    // The names point into the text being read, or into renamed_.
    struct Key {
        std::string_view given;
        std::string_view written;
    };
    std::vector<Key> keys_;         // names of the open objects, innermost last
    std::deque<std::string> renamed_;
    std::vector<std::string_view> strictNames_; // names met by copyStrictMembers
    std::size_t keyCount_ = 0;      // keys_ in use; the strings are reused
    bool keyPending_ = false;
};
