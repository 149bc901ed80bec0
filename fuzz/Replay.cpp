// SPDX-License-Identifier: MIT
// usage: fyrn_fuzz_TARGET FILE|DIRECTORY...
// Stands in for the fuzzer where there is none: runs the target once with every file. Fails when there is not one.
#include "fuzz/FuzzInput.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

std::size_t filesRun = 0;

void RunFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    fuzz::Require(!file.bad() && file.is_open(), "a file of the corpus can be read");
    // A copy of just this size, so that a sanitizer sees every byte read beyond it.
    const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
    std::fprintf(stderr, "%s\n", path.filename().string().c_str());
    LLVMFuzzerTestOneInput(input.data(), input.size());
    ++filesRun;
}

void Run(const std::filesystem::path& path) {
    if (!std::filesystem::is_directory(path))
        return RunFile(path);
    for (const auto& entry : std::filesystem::directory_iterator(path))
        if (entry.is_regular_file())
            RunFile(entry.path());
}

} // namespace

int main(int argc, char* argv[]) {
    std::vector<std::filesystem::path> paths; // absolute: a target may enter a directory of its own
    for (int i = 1; i < argc; ++i)
        paths.push_back(std::filesystem::absolute(argv[i]));
    for (const std::filesystem::path& path : paths)
        Run(path);
    std::fprintf(stderr, "%zu inputs\n", filesRun);
    return filesRun == 0 ? 1 : 0;
}
