// SPDX-License-Identifier: MIT
// What the tests of moving share: files in the current directory, and system calls that fail on demand.
#pragma once

#include "platform/File.h"
#include "platform/MoveCalls_Posix.h"
#include "platform/Text.h"
#include "tests/helpers/ScratchFiles.h"

#include <cerrno>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using platform::MoveResult;

class MoveFixture : public testing::Test {
  protected:
    MoveFixture() { std::filesystem::current_path(scratch.Directory()); }
    ~MoveFixture() override {
        std::filesystem::current_path("/");
        platform::moveCalls = platform::systemMoveCalls;
    }

    static MoveResult Try(const std::string& from, const std::string& to) {
        return platform::MoveWithoutReplacing(platform::DecodeName(from).c_str(),
                                              platform::DecodeName(to).c_str());
    }
    static bool Move(const std::string& from, const std::string& to) {
        return Try(from, to) == MoveResult::moved;
    }
    static bool Remove(const std::string& path) {
        return platform::RemoveFile(platform::DecodeName(path).c_str());
    }

    static bool RemoveInFavourOf(const std::string& path, const std::string& other) {
        return platform::RemoveInFavourOf(platform::DecodeName(path).c_str(),
                                          platform::DecodeName(other).c_str());
    }

    // Whether another run would have to wait for the directory.
    static bool IsLocked(const char* directory) {
        const int descriptor = open(directory, O_RDONLY | O_DIRECTORY);
        const bool locked = flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
        close(descriptor);
        return locked;
    }

    static void Write(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

    // The file's text; "(none)" where there is no entry of this name.
    static std::string Read(const std::string& path) {
        struct stat status;
        if (lstat(path.c_str(), &status) != 0)
            return "(none)";
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // How many entries a directory has: nothing temporary may remain.
    static std::ptrdiff_t Entries(const std::filesystem::path& directory) {
        return std::distance(std::filesystem::directory_iterator(directory), {});
    }

    helpers::ScratchFiles scratch;
};

// A call that fails with an error, in the shape of any of the calls.
template <int error, class... Arguments>
int FailWith(Arguments...) {
    errno = error;
    return -1;
}
