#include "stream/input_file.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
constexpr std::size_t kReadBlock = 1 << 18;
}

InputFile::~InputFile()
{
    close();
    std::free(buffer_);
}

bool InputFile::open(const char* path)
{
    close();
    int fd = ::open(path, O_RDONLY);
    if (fd < 0) return false;
    adoptDescriptor(fd);
    return true;
}

void InputFile::adoptDescriptor(int fd)
{
    close();
    fd_ = fd;
    position_ = 0;
    atEnd_ = false;
}

void InputFile::close()
{
    if (fd_ >= 0) ::close(fd_);
    fd_ = -1;
    bufferStart_ = bufferEnd_ = 0;
}

bool InputFile::refill()
{
    if (!buffer_) {
        buffer_ = static_cast<std::uint8_t*>(std::malloc(kReadBlock));
        if (!buffer_) return false;
    }
    bufferStart_ = bufferEnd_ = 0;
    for (;;) {
        ssize_t got = ::read(fd_, buffer_, kReadBlock);
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        bufferEnd_ = static_cast<std::size_t>(got);
        return true;
    }
}

std::size_t InputFile::readThroughRefills(void* destination, std::size_t length)
{
    auto* out = static_cast<std::uint8_t*>(destination);
    std::size_t done = 0;
    while (done < length) {
        if (bufferStart_ == bufferEnd_ && (fd_ < 0 || !refill())) {
            atEnd_ = true;
            break;
        }
        std::size_t take = bufferEnd_ - bufferStart_;
        if (take > length - done) take = length - done;
        std::memcpy(out + done, buffer_ + bufferStart_, take);
        bufferStart_ += take;
        done += take;
    }
    position_ += static_cast<std::int64_t>(done);
    return done;
}

bool InputFile::seek(std::int64_t position)
{
    if (fd_ < 0 || position < 0) return false;
    // A seek inside the buffered block only moves the cursor.
    std::int64_t blockStart = position_ - static_cast<std::int64_t>(bufferStart_);
    if (position >= blockStart && position <= blockStart + static_cast<std::int64_t>(bufferEnd_)) {
        bufferStart_ = static_cast<std::size_t>(position - blockStart);
    } else {
        if (::lseek(fd_, position, SEEK_SET) < 0) return false;
        bufferStart_ = bufferEnd_ = 0;
    }
    position_ = position;
    atEnd_ = false;
    return true;
}

std::int64_t InputFile::size()
{
    struct stat info;
    if (fd_ < 0 || ::fstat(fd_, &info) != 0) return -1;
    return static_cast<std::int64_t>(info.st_size);
}
