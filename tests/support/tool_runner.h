// Runs the tool on captures in a scratch directory and collects what it
// wrote: exit status, standard output, standard error and the JSON files,
// with the memory-address keys of hex-dump rows masked as "ADDR".
#pragma once

#include <map>
#include <string>
#include <vector>

#include "packet_builder.h"

class ScratchDir {
public:
    ScratchDir();
    ~ScratchDir();
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    const std::string& path() const { return path_; }
    void write(const std::string& name, const Bytes& bytes) const;
    void write(const std::string& name, const Capture& capture) const { write(name, capture.bytes()); }
    std::string read(const std::string& name) const;

private:
    std::string path_;
};

struct ToolRun {
    int status = -1;
    std::string out;
    std::string err;
    std::map<std::string, std::string> json; // output files by name, keys masked
};

// Runs the built zyntelbin2json binary in the directory.
ToolRun runBuiltTool(const ScratchDir& dir, const std::vector<std::string>& arguments);
// Runs the program at `path` in the directory.
ToolRun runProgram(const char* path, const ScratchDir& dir, const std::vector<std::string>& arguments);

// Replaces every hex-dump row key ("0x...": or "(nil)":) by "ADDR".
std::string maskAddresses(const std::string& text);
