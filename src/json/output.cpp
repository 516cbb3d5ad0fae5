#include "json/output.h"

#include "json/format.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::size_t kBufferSize = 1 << 16;

bool writeAll(int fd, const char* data, std::size_t length)
{
    while (length > 0) {
        ssize_t done = ::write(fd, data, length);
        if (done < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        data += done;
        length -= static_cast<std::size_t>(done);
    }
    return true;
}

} // namespace

Output::~Output()
{
    close();
    std::free(buffer_);
}

bool Output::create(const char* path)
{
    close();
    int fd = ::open(path, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (fd < 0) return false;
    fd_ = fd;
    ownsFd_ = true;
    unbuffered_ = false;
    memory_ = nullptr;
    return true;
}

void Output::attachDescriptor(int fd, bool unbuffered)
{
    close();
    fd_ = fd;
    ownsFd_ = false;
    unbuffered_ = unbuffered;
    memory_ = nullptr;
}

void Output::attachString(std::string* text)
{
    close();
    memory_ = text;
}

void Output::attachSink(Sink sink, void* context)
{
    close();
    sink_ = sink;
    sinkContext_ = context;
}

int Output::fail()
{
    if (hook_) hook_(hookContext_, -1);
    return -1;
}

// Appends to the buffer, flushing whenever it fills up.
void Output::append(const char* text, std::size_t length)
{
    if (buffer_ && used_ + length <= kBufferSize && !memory_) {
        std::memcpy(buffer_ + used_, text, length);
        used_ += length;
        return;
    }
    if (memory_) {
        memory_->append(text, length);
        return;
    }
    if (fd_ < 0 && !sink_) {
        appendFailed_ = true;
        return;
    }
    if (!buffer_) {
        buffer_ = static_cast<char*>(std::malloc(kBufferSize));
        if (!buffer_) {
            appendFailed_ = true;
            return;
        }
    }
    while (length > 0) {
        if (used_ == kBufferSize && !flush()) appendFailed_ = true;
        std::size_t room = kBufferSize - used_;
        std::size_t now = length < room ? length : room;
        std::memcpy(buffer_ + used_, text, now);
        used_ += now;
        text += now;
        length -= now;
    }
}

// The formatter writes straight into the buffer; when it fills up, the
// buffer is flushed and the formatter goes on from its start.
void Output::refillBuffer(FormatTarget& target)
{
    auto* output = static_cast<Output*>(target.context);
    output->used_ = static_cast<std::size_t>(target.at - output->buffer_);
    if (!output->flush()) output->appendFailed_ = true;
    target.at = output->buffer_ + output->used_;
    target.end = output->buffer_ + kBufferSize;
}

namespace {

// Memory targets format through a small window that is appended when full.
struct MemoryWindow {
    std::string* text;
    char window[512];
};

void refillMemory(FormatTarget& target)
{
    auto* memory = static_cast<MemoryWindow*>(target.context);
    memory->text->append(memory->window, static_cast<std::size_t>(target.at - memory->window));
    target.at = memory->window;
}

} // namespace

int Output::write(std::string_view text)
{
    appendFailed_ = false;
    append(text.data(), text.size());
    if (unbuffered_ && !flush()) appendFailed_ = true;
    return appendFailed_ ? fail() : static_cast<int>(text.size());
}

char* Output::reserve(std::size_t length)
{
    if (!buffer_ || (fd_ < 0 && !sink_) || unbuffered_ || length > kBufferSize) return nullptr;
    appendFailed_ = false;
    if (kBufferSize - used_ < length && !flush()) appendFailed_ = true;
    return buffer_ + used_;
}

int Output::commit(std::size_t length)
{
    used_ += length;
    return appendFailed_ ? fail() : static_cast<int>(length);
}

int Output::putLine(std::string_view text)
{
    int first = write(text);
    if (first < 0) return first;
    int second = write("\n");
    if (second < 0) return second;
    return first + second;
}

int Output::print(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    int length;
    if (buffer_ && fd_ >= 0 && !unbuffered_) {
        // The common case, kept short: a buffered file whose buffer exists.
        appendFailed_ = false;
        FormatTarget target{buffer_ + used_, buffer_ + kBufferSize, refillBuffer, this};
        length = formatLiteral(target, format, args);
        used_ = static_cast<std::size_t>(target.at - buffer_);
        if (appendFailed_ || length < 0) length = fail();
    } else {
        length = printElsewhere(format, args);
    }
    va_end(args);
    return length;
}

// Prints to memory, to a sink, to an unbuffered descriptor, or to a file
// whose buffer does not exist yet.
int Output::printElsewhere(const char* format, va_list args)
{
    appendFailed_ = false;
    int length;
    if (memory_) {
        MemoryWindow memory{memory_, {}};
        FormatTarget target{memory.window, memory.window + sizeof memory.window, refillMemory, &memory};
        length = formatLiteral(target, format, args);
        refillMemory(target);
    } else if ((fd_ >= 0 || sink_) && (buffer_ || (buffer_ = static_cast<char*>(std::malloc(kBufferSize))))) {
        FormatTarget target{buffer_ + used_, buffer_ + kBufferSize, refillBuffer, this};
        length = formatLiteral(target, format, args);
        used_ = static_cast<std::size_t>(target.at - buffer_);
    } else {
        length = -1;
    }
    if (unbuffered_ && !flush()) appendFailed_ = true;
    return appendFailed_ || length < 0 ? fail() : length;
}

bool Output::flush()
{
    if (memory_ || used_ == 0) return true;
    if (fd_ < 0) {
        if (!sink_) return true;
        sink_(sinkContext_, buffer_, used_);
        used_ = 0;
        return true;
    }
    bool ok = writeAll(fd_, buffer_, used_);
    used_ = 0; // what could not be written is dropped; the failure is reported
    return ok;
}

bool Output::close()
{
    bool ok = flush();
    if (!ok) fail();
    if (ownsFd_ && fd_ >= 0 && ::close(fd_) != 0 && ok) {
        ok = false;
        fail();
    }
    fd_ = -1;
    ownsFd_ = false;
    memory_ = nullptr;
    sink_ = nullptr;
    return ok;
}

namespace {

Output& standardOutput()
{
    static Output out;
    static bool attached = false;
    if (!attached) {
        out.attachDescriptor(STDOUT_FILENO, false);
        attached = true;
    }
    return out;
}

Output& standardError()
{
    static Output err;
    static bool attached = false;
    if (!attached) {
        err.attachDescriptor(STDERR_FILENO, true);
        attached = true;
    }
    return err;
}

Output* consoleTarget = nullptr;
Output* errorTarget = nullptr;

} // namespace

Output& console() { return consoleTarget ? *consoleTarget : standardOutput(); }
Output& errorConsole() { return errorTarget ? *errorTarget : standardError(); }

void redirectConsole(Output* out, Output* err)
{
    consoleTarget = out;
    errorTarget = err;
}

namespace {

// A bounded buffer keeps what fits; the rest is formatted into a scratch
// window and dropped, so that the full length is still counted.
struct BoundedText {
    char* kept;     // where the buffer's text ends
    bool full;
    char scratch[256];
};

void refillBounded(FormatTarget& target)
{
    auto* bounded = static_cast<BoundedText*>(target.context);
    if (!bounded->full) {
        bounded->kept = target.at;
        bounded->full = true;
    }
    target.at = bounded->scratch;
    target.end = bounded->scratch + sizeof bounded->scratch;
}

} // namespace

static int formatBoundedList(char* buffer, std::size_t capacity, const char* format, va_list args)
{
    BoundedText bounded{buffer, capacity == 0, {}};
    char* end = capacity == 0 ? buffer : buffer + capacity - 1;
    FormatTarget target{buffer, end, refillBounded, &bounded};
    if (capacity == 0) refillBounded(target);
    int length = formatText(target, format, args);
    if (capacity > 0) *(bounded.full ? bounded.kept : target.at) = '\0';
    return length;
}

int formatBounded(char* buffer, std::size_t capacity, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    int length = formatBoundedList(buffer, capacity, format, args);
    va_end(args);
    return length;
}

TextBuffer::TextBuffer(char* text, std::size_t capacity) : text_(text), capacity_(capacity)
{
    if (capacity_ > 0) text_[0] = '\0';
}

void TextBuffer::append(const char* format, ...)
{
    if (used_ >= capacity_) return;
    va_list args;
    va_start(args, format);
    const int length = formatBoundedList(text_ + used_, capacity_ - used_, format, args);
    va_end(args);
    if (length > 0) used_ += static_cast<std::size_t>(length);
}
