// Stream files of the current directory: every entry whose name begins with
// a stream prefix and whose part from its first dot on is exactly ".bin".
#pragma once

#include <cstdint>
#include <string>
#include <vector>

constexpr const char* kFirmwarePrefix = "zyntel_fw_";
constexpr const char* kHostPrefix = "zyntel_host_";
constexpr const char* kClientPrefix = "zyntel_client_";

bool isStreamFileName(const char* name, const char* prefix);

// Number of matching entries of ".", or -1 when it cannot be read.
std::int32_t countStreamFiles(const char* prefix);

// An open listing of ".", read again from its start for each prefix.
class StreamFileListing {
public:
    StreamFileListing();
    ~StreamFileListing();
    StreamFileListing(const StreamFileListing&) = delete;
    StreamFileListing& operator=(const StreamFileListing&) = delete;

    bool isOpen() const { return directory_ != nullptr; }
    void rewind();
    // The next matching name, valid until the next call; nullptr at the end.
    const char* next(const char* prefix);

private:
    void* directory_;
};

// The stream files of ".", firmware files first, then host, then client,
// each group in directory order. A group that cannot be counted is reported
// and skipped; false when the directory cannot be listed at all.
bool discoverStreamFiles(std::vector<std::string>& names);
