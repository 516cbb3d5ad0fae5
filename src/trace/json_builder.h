// A JSON object built from loose text: places commas, keeps names unique
// and closes what is left open, whatever order its input comes in, so that
// the result is always strictly valid JSON.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "trace/json_text.h"

class JsonBuilder {
public:
    // Starts an object that every later call adds to, in the builder's own
    // buffer, after the objects built before it; text() is the JSON
    // written since. allText() holds the objects built since clear(), one
    // after another.
    void begin();
    std::string_view text() const { return {data_.get() + start_, used_ - start_}; }
    std::string_view allText() const { return {data_.get(), used_}; }
    void clear() { used_ = start_ = 0; }
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
    // plain value (a string's text without quotes). None, with nothing
    // added and `at` unchanged, when the object is not strict JSON with
    // unique names, or its names repeat those of the current object.
    // Front when the text stops being strict right after a member whose
    // value is a plain string or number (a missing comma): the members
    // before it are added, as a tolerant reader would write them, and `at`
    // is where the rest of the object starts.
    enum class Copied { None, Whole, Front };
    using MemberHook = void (*)(void* context, std::string_view name, std::string_view value);
    Copied copyStrictMembers(std::string_view text, std::size_t& at, MemberHook onMember, void* context);

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
    std::size_t start_ = 0; // of the object begun last
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
