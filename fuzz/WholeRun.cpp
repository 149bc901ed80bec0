// SPDX-License-Identifier: MIT
// Whole runs in a scratch directory with whatever arguments: they end with status 0 and lose no content. Input: the
// arguments, each ended by a zero. Those that could lead out of the scratch directory are left out.
#include "fuzz/FuzzInput.h"
#include "platform/File.h"
#include "platform/Text.h"
#include "tests/helpers/ScratchFiles.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <string_view>
#include <vector>

int wmain(int argc, wchar_t* argv[]);

namespace {

namespace fs = std::filesystem;

bool StaysInside(std::string_view argument) {
    return argument.find("..") == argument.npos && !argument.starts_with('/') &&
           argument.find("=/") == argument.npos;
}

void AddArgument(std::string_view argument, std::vector<std::wstring>& arguments) {
    if (StaysInside(argument) && arguments.size() < 12)
        arguments.push_back(platform::DecodeName(argument));
}

std::vector<std::wstring> Arguments(std::string_view text) {
    std::vector<std::wstring> arguments = {L"fyrn"};
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\0'), text.size());
        AddArgument(text.substr(0, length), arguments);
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return arguments;
}

void Write(const fs::path& path, std::string_view content) {
    std::ofstream(path, std::ios::binary) << content;
}

// Equal contents, empty ones, names with and without extensions, directories in each other, links.
void FillScratch(const fs::path& root) {
    for (const auto& entry : fs::directory_iterator(root))
        fs::remove_all(entry);
    fs::create_directories(root / "d" / "d" / "e.txt");
    Write(root / "a.txt", "abc");
    Write(root / "b.txt", "abc");
    Write(root / ".rc", "");
    Write(root / "noext", "message digest");
    Write(root / "d" / "a.txt", "abc");
    Write(root / "d" / "\xff\xc3\xa9", "bytes");
    Write(root / "d" / "d" / "x", "");
    Write(root / "d" / "d" / "900150983cd24fb0d6963f7d28e17f72", "another");
    Write(root / "d" / "d" / "e.txt" / "deep", std::string(3000, 'x'));
    fs::create_symlink("a.txt", root / "link");
    fs::create_directory_symlink(".", root / "d" / "loop");
    fs::create_symlink("nothing", root / "dangling");
}

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::set<std::string> Contents(const fs::path& root) {
    std::set<std::string> contents;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        fuzz::Require(entry.path().filename().string().find(".tmp") == std::string::npos,
                      "no temporary file is left");
        if (entry.is_regular_file() && !entry.is_symlink())
            contents.insert(Content(entry.path()));
    }
    return contents;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const helpers::ScratchFiles files;
    static const bool silent = std::freopen("/dev/null", "w", stdout) != nullptr;
    fuzz::Require(silent, "the reports can be thrown away");
    const fs::path root = files.Directory();
    fs::current_path(root);
    FillScratch(root);
    const std::set<std::string> before = Contents(root);

    std::vector<std::wstring> arguments = Arguments({reinterpret_cast<const char*>(data), size});
    std::vector<wchar_t*> pointers;
    for (std::wstring& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    platform::AllowSpecialFiles(true); // as at the start of a run
    fuzz::Require(wmain(static_cast<int>(arguments.size()), pointers.data()) == 0, "the status is 0");
    fuzz::Require(fs::current_path() == root, "the run ends where it began");
    fuzz::Require(Contents(root) == before, "no content is lost, and none added");
    return 0;
}
