#include "tool_runner.h"

#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>


namespace fs = std::filesystem;

ScratchDir::ScratchDir()
{
    std::string pattern = (fs::temp_directory_path() / "zyntel-test-XXXXXX").string();
    if (!mkdtemp(pattern.data())) throw std::runtime_error("cannot create a scratch directory");
    path_ = pattern;
}

ScratchDir::~ScratchDir()
{
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void ScratchDir::write(const std::string& name, const Bytes& bytes) const
{
    std::ofstream file(fs::path(path_) / name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::string ScratchDir::read(const std::string& name) const
{
    std::ifstream file(fs::path(path_) / name, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string maskAddresses(const std::string& text)
{
    static const std::regex rowKey(R"re(\n      "(0x[0-9a-f]+|\(nil\))": ")re");
    return std::regex_replace(text, rowKey, "\n      \"ADDR\": \"");
}

namespace {

void collectJson(const ScratchDir& dir, ToolRun& run)
{
    for (const fs::directory_entry& entry : fs::directory_iterator(dir.path())) {
        std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && name.size() > 5 && name.ends_with(".json"))
            run.json[name] = maskAddresses(dir.read(name));
    }
}

std::string readAndRemove(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    fs::remove(path);
    return text.str();
}

} // namespace

ToolRun runBuiltTool(const ScratchDir& dir, const std::vector<std::string>& arguments)
{
    return runProgram(ZYNTEL_TOOL_PATH, dir, arguments);
}

ToolRun runProgram(const char* path, const ScratchDir& dir, const std::vector<std::string>& arguments)
{
    std::string outPath = dir.path() + "/../" + fs::path(dir.path()).filename().string() + ".stdout";
    std::string errPath = dir.path() + "/../" + fs::path(dir.path()).filename().string() + ".stderr";
    pid_t child = fork();
    if (child == 0) {
        if (chdir(dir.path().c_str()) != 0) _exit(127);
        int out = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        int err = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        dup2(out, 1);
        dup2(err, 2);
        std::vector<char*> argv;
        argv.push_back(const_cast<char*>(path));
        for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        execv(path, argv.data());
        _exit(127);
    }
    int waitStatus = 0;
    waitpid(child, &waitStatus, 0);
    ToolRun run;
    run.status = WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : 128 + WTERMSIG(waitStatus);
    run.out = readAndRemove(outPath);
    run.err = readAndRemove(errPath);
    collectJson(dir, run);
    return run;
}
