// Replays saved inputs through a fuzz target's entry function, for builds
// without libFuzzer:
//   <name>_fuzz <folder or file>...
// Every file of each folder is fed once, in name order. A crash or a
// sanitizer report ends the process as it would end the fuzzer. Finding no
// input at all is a failure, so that a misplaced corpus cannot pass unseen.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fs = std::filesystem;

int main(int argc, char** argv)
{
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        std::error_code notFolder;
        for (const fs::directory_entry& entry : fs::directory_iterator(argv[i], notFolder)) inputs.push_back(entry.path());
        if (notFolder) inputs.emplace_back(argv[i]);
    }
    if (inputs.empty()) {
        std::fprintf(stderr, "replay: no inputs found\n");
        return 1;
    }
    std::sort(inputs.begin(), inputs.end());
    for (const fs::path& input : inputs) {
        std::ifstream file(input, std::ios::binary);
        if (!file) {
            std::fprintf(stderr, "replay: cannot read %s\n", input.c_str());
            return 1;
        }
        std::vector<std::uint8_t> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("replayed %zu inputs\n", inputs.size());
    return 0;
}
