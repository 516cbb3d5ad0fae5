// Strictly valid JSON text built from the tool's own loose text: string
// escaping, the number test for unquoted values, and a builder that places
// commas and closes what is left open, whatever order its input comes in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Appends `text` as a quoted JSON string. Valid escape pairs are kept, a
// lone backslash, a quote, control characters and bytes that are not UTF-8
// are escaped (a stray byte as the code point of the same value).
void appendJsonString(std::string& out, std::string_view text);

// True when `text` is a JSON number exactly as it stands.
bool isJsonNumber(std::string_view text);

// Reads unsigned decimal digits (a quoted value's content too); false for
// anything else or a value above 2^64 - 1.
bool parseUnsigned(std::string_view text, std::uint64_t& value);

// Appends nanoseconds as microseconds with exactly three decimals.
void appendMicroseconds(std::string& out, std::uint64_t nanoseconds);

class JsonBuilder {
public:
    // Starts an object that every later call adds to; the text goes to `out`.
    void begin(std::string* out);
    void openObject();
    void openArray();
    void close();
    void closeAll();
    std::size_t depth() const { return levels_.size(); }
    bool inObject() const { return !levels_.empty() && levels_.back().isObject; }

    // A member name of the current object; a name already used in the same
    // object gets " (2)", " (3)", ... so that every name stays unique.
    void key(std::string_view name);
    void stringValue(std::string_view text);
    // A number as it stands, anything else as a string.
    void looseValue(std::string_view text);

private:
    struct Level {
        bool isObject;
        bool empty;
        std::size_t firstKey; // into keys_
    };
    void beforeValue();

    std::string* out_ = nullptr;
    std::vector<Level> levels_;
    struct Key {
        std::string given;
        std::string written;
    };
    std::vector<Key> keys_;         // names of the open objects, innermost last
    std::size_t keyCount_ = 0;      // keys_ in use; the strings are reused
    bool keyPending_ = false;
};
