#include "json/output.h"

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

// Returns room for `length` characters at the end of the buffer, flushing
// first when they do not fit; nullptr when the flush failed.
char* Output::reserve(std::size_t length)
{
    if (!buffer_) {
        buffer_ = static_cast<char*>(std::malloc(kBufferSize));
        if (!buffer_) return nullptr;
    }
    if (used_ + length > kBufferSize && !flush()) return nullptr;
    return buffer_ + used_;
}

int Output::write(std::string_view text)
{
    if (memory_) {
        memory_->append(text);
        return static_cast<int>(text.size());
    }
    if (fd_ < 0) return fail();
    if (text.size() > kBufferSize) {
        if (!flush() || !writeAll(fd_, text.data(), text.size())) return fail();
        return static_cast<int>(text.size());
    }
    char* room = reserve(text.size());
    if (!room) return fail();
    std::memcpy(room, text.data(), text.size());
    used_ += text.size();
    if (unbuffered_ && !flush()) return fail();
    return static_cast<int>(text.size());
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
    char small[512];
    va_list args;
    va_start(args, format);
    int length = std::vsnprintf(small, sizeof small, format, args);
    va_end(args);
    if (length < 0) return fail();
    if (static_cast<std::size_t>(length) < sizeof small) return write({small, static_cast<std::size_t>(length)});

    std::string large(static_cast<std::size_t>(length) + 1, '\0');
    va_start(args, format);
    std::vsnprintf(large.data(), large.size(), format, args);
    va_end(args);
    large.pop_back();
    return write(large);
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

int formatBounded(char* buffer, std::size_t capacity, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    int length = std::vsnprintf(buffer, capacity, format, args);
    va_end(args);
    return length;
}
