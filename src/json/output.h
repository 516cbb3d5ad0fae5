// The one output layer: every JSON and console write of the tool goes
// through an Output. It buffers in memory and writes in large blocks, so a
// converter can print field by field without a system call each time.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

struct FormatTarget;

class Output {
public:
    // Called once for every write that fails (result < 0), with that result.
    using FailureHook = void (*)(void* context, int result);
    // Receives each buffered block of text instead of a descriptor.
    using Sink = void (*)(void* context, const char* text, std::size_t length);

    Output() = default;
    ~Output();
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    // Targets. A file descriptor owned by the Output (closed by close()),
    // a borrowed descriptor (stdout, stderr), a string in memory, or a sink
    // function that takes the text in blocks of up to 64 KiB as they fill.
    bool create(const char* path);
    void attachDescriptor(int fd, bool unbuffered);
    void attachString(std::string* text);
    void attachSink(Sink sink, void* context);
    bool isOpen() const { return fd_ >= 0 || memory_ != nullptr || sink_ != nullptr; }

    // printf-compatible formatted write. Returns the number of characters
    // written, or -1 when the data could not be written. The format must be
    // a text that never changes while the program runs (a string literal):
    // its parsed form is kept by its address.
    int print(const char* format, ...) __attribute__((format(printf, 2, 3)));
    // Writes the text as it stands; returns its length or -1.
    int write(std::string_view text);
    // Writes the text and a line feed, like the C library's puts.
    int putLine(std::string_view text);

    // Room for `length` bytes of text to be written in place, finished by
    // commit(bytes written). Null when the target has no buffer to lend
    // (memory and unbuffered targets, or before the first write): then
    // build the text elsewhere and write it.
    char* reserve(std::size_t length);
    // Returns the number of bytes committed, or -1 when an earlier part
    // could not be written to make room.
    int commit(std::size_t length);

    // Pushes buffered text to the target; false if that failed.
    bool flush();
    // Flushes and releases an owned descriptor; false if the final flush failed.
    bool close();

    void setFailureHook(FailureHook hook, void* context) { hook_ = hook; hookContext_ = context; }
    FailureHook failureHook() const { return hook_; }
    void* failureHookContext() const { return hookContext_; }

private:
    static void refillBuffer(FormatTarget& target);
    [[gnu::noinline]] int printElsewhere(const char* format, va_list args);
    void append(const char* text, std::size_t length);
    int fail();

    int fd_ = -1;
    bool ownsFd_ = false;
    bool unbuffered_ = false;
    std::string* memory_ = nullptr;
    Sink sink_ = nullptr;
    void* sinkContext_ = nullptr;
    char* buffer_ = nullptr;
    std::size_t used_ = 0;
    bool appendFailed_ = false; // a flush failed while the current write was appended
    FailureHook hook_ = nullptr;
    void* hookContext_ = nullptr;
};

// Console targets: standard output for progress, warnings and errors,
// standard error for the write-failure reports. Tests may redirect them.
Output& console();
Output& errorConsole();
void redirectConsole(Output* out, Output* err);

// Formats into a fixed-size text buffer exactly as a bounded printf does:
// the text is cut at capacity - 1 characters and always NUL-terminated.
// Returns the length the full text would have had.
int formatBounded(char* buffer, std::size_t capacity, const char* format, ...)
    __attribute__((format(printf, 3, 4)));

// A caller-owned text buffer filled piece by piece with bounded prints. Each
// piece is cut to the room left (as formatBounded cuts it); once the text
// has reached the capacity, nothing more is appended.
class TextBuffer {
public:
    TextBuffer(char* text, std::size_t capacity); // starts as an empty string
    void append(const char* format, ...) __attribute__((format(printf, 2, 3)));

private:
    char* text_;
    std::size_t capacity_;
    std::size_t used_ = 0;
};
