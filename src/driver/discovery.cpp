#include "driver/discovery.h"

#include <cstring>
#include <dirent.h>

#include "json/output.h"

bool isStreamFileName(const char* name, const char* prefix)
{
    if (std::strncmp(name, prefix, std::strlen(prefix)) != 0) return false;
    const char* firstDot = std::strchr(name, '.');
    return firstDot && std::strcmp(firstDot, ".bin") == 0;
}

std::int32_t countStreamFiles(const char* prefix)
{
    DIR* directory = opendir(".");
    if (!directory) {
        console().putLine("Error: failed to read current directory");
        return -1;
    }
    std::int32_t count = 0;
    while (const dirent* entry = readdir(directory))
        if (isStreamFileName(entry->d_name, prefix)) ++count;
    closedir(directory);
    return count;
}

StreamFileListing::StreamFileListing() : directory_(opendir(".")) {}

StreamFileListing::~StreamFileListing()
{
    if (directory_) closedir(static_cast<DIR*>(directory_));
}

void StreamFileListing::rewind() { rewinddir(static_cast<DIR*>(directory_)); }

const char* StreamFileListing::next(const char* prefix)
{
    while (const dirent* entry = readdir(static_cast<DIR*>(directory_)))
        if (isStreamFileName(entry->d_name, prefix)) return entry->d_name;
    return nullptr;
}

bool discoverStreamFiles(std::vector<std::string>& names)
{
    struct Prefix {
        const char* prefix;
        const char* warning;
        std::int32_t count;
    };
    Prefix prefixes[] = {
        {kFirmwarePrefix, "warning: unable to discover ZyntelFW stream files.", 0},
        {kHostPrefix, "warning: unable to discover ZyntelHost stream files.", 0},
        {kClientPrefix, "warning: unable to discover client stream files.", 0},
    };
    std::int32_t total = 0;
    for (Prefix& prefix : prefixes) {
        prefix.count = countStreamFiles(prefix.prefix);
        if (prefix.count < 0) {
            console().putLine(prefix.warning);
            prefix.count = 0;
        }
        total += prefix.count;
    }
    if (total == 0) return true;

    StreamFileListing listing;
    if (!listing.isOpen()) return false;
    for (const Prefix& prefix : prefixes) {
        if (prefix.count == 0) continue;
        listing.rewind();
        for (std::int32_t i = 0; i < prefix.count; ++i) {
            const char* name = listing.next(prefix.prefix);
            if (!name) break; // the directory shrank since it was counted
            names.emplace_back(name);
        }
    }
    return true;
}
