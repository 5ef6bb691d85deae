// The main function of a fuzz target without libFuzzer: runs every file of the given folders once.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz_target.h"

namespace {

std::vector<std::filesystem::path> filesUnder(int argc, char** argv) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            if (entry.is_regular_file()) files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::filesystem::path> files = filesUnder(argc, argv);
    for (const auto& file : files) {
        std::ifstream stream(file, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        if (stream.bad()) {
            std::cerr << "cannot read " << file << '\n';
            return 1;
        }
        // Named before it runs, so that a crash tells which one it was.
        std::cout << file.string() << std::endl;
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    // An empty corpus would be a test of nothing.
    return files.empty() ? 1 : 0;
}
