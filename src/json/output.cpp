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
    if (fd_ < 0) {
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

void Output::appendPiece(void* output, const char* text, std::size_t length)
{
    static_cast<Output*>(output)->append(text, length);
}

int Output::write(std::string_view text)
{
    appendFailed_ = false;
    append(text.data(), text.size());
    if (unbuffered_ && !flush()) appendFailed_ = true;
    return appendFailed_ ? fail() : static_cast<int>(text.size());
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
    appendFailed_ = false;
    va_list args;
    va_start(args, format);
    int length = formatText(FormatSink{appendPiece, this}, format, args);
    va_end(args);
    if (unbuffered_ && !flush()) appendFailed_ = true;
    return appendFailed_ || length < 0 ? fail() : length;
}

bool Output::flush()
{
    if (memory_ || fd_ < 0 || used_ == 0) return true;
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

// Copies what fits into a fixed buffer, keeping room for the terminator.
struct BoundedText {
    char* buffer;
    std::size_t capacity;
    std::size_t used;
};

void appendBounded(void* context, const char* text, std::size_t length)
{
    auto* bounded = static_cast<BoundedText*>(context);
    if (bounded->capacity == 0) return;
    std::size_t room = bounded->capacity - 1 - bounded->used;
    std::size_t now = length < room ? length : room;
    std::memcpy(bounded->buffer + bounded->used, text, now);
    bounded->used += now;
}

} // namespace

int formatBounded(char* buffer, std::size_t capacity, const char* format, ...)
{
    BoundedText bounded{buffer, capacity, 0};
    va_list args;
    va_start(args, format);
    int length = formatText(FormatSink{appendBounded, &bounded}, format, args);
    va_end(args);
    if (capacity > 0) buffer[bounded.used] = '\0';
    return length;
}
