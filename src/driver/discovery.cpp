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
