// Goes through a folder of inputs once: what a fuzzer does in a build that does not fuzz.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzzer.h"

int main(int argc, char** argv) {
    if (argc != 2 || !std::filesystem::is_directory(argv[1])) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    const std::filesystem::directory_iterator folder(argv[1]);
    std::vector<std::filesystem::path> files;
    std::copy_if(begin(folder), end(folder), std::back_inserter(files),
                 [](const std::filesystem::directory_entry& entry) { return entry.is_regular_file(); });
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files) {
        std::printf("%s\n", file.c_str());
        std::fflush(stdout);
        std::ifstream stream(file, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    if (files.empty()) {
        std::fprintf(stderr, "%s holds no input\n", argv[1]);
        return 1;
    }
    return 0;
}
