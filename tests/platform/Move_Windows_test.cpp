// SPDX-License-Identifier: MIT
// Moving to another drive, and attributes.
#include "platform/File.h"

#include "tests/helpers/ScratchFiles.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <windows.h>

namespace {

namespace fs = std::filesystem;

using platform::MoveResult;

// Before any test changes it.
const fs::path startDirectory = fs::current_path();

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The scratch files are on one drive, and the directory where the tests were started may be on another one.
class MoveToAnotherDrive : public testing::Test {
  protected:
    void SetUp() override {
        if (startDirectory.root_name() == scratch.Directory().root_name())
            GTEST_SKIP() << "needs to be started on another drive than that of the temporary files";
        fs::create_directory(elsewhere);
    }

    void TearDown() override { fs::remove_all(elsewhere); }

    helpers::ScratchFiles scratch;
    const fs::path elsewhere = startDirectory / scratch.Directory().filename();
};

TEST_F(MoveToAnotherDrive, AFileIsCopiedWholeAndVanishesFromItsPlace) {
    const std::string content(3000000, 'x');
    const std::wstring from = scratch.Write("a", content);
    const fs::path to = elsewhere / "b";
    ASSERT_EQ(platform::MoveWithoutReplacing(from.c_str(), to.c_str()), MoveResult::moved);
    EXPECT_FALSE(fs::exists(from));
    EXPECT_EQ(Content(to), content);
}

TEST_F(MoveToAnotherDrive, NothingIsReplaced) {
    const std::wstring from = scratch.Write("a", "x");
    const fs::path to = elsewhere / "b";
    std::ofstream(to) << "y";
    EXPECT_EQ(platform::MoveWithoutReplacing(from.c_str(), to.c_str()), MoveResult::nameTaken);
    EXPECT_EQ(Content(from), "x");
    EXPECT_EQ(Content(to), "y");
}

TEST_F(MoveToAnotherDrive, AFileThatIsHeldOpenStays) {
    const std::wstring from = scratch.Write("a", "x");
    platform::InputFile file = platform::OpenForReading(from.c_str());
    platform::MoveWithoutReplacing(from.c_str(), (elsewhere / "b").c_str());
    platform::Close(file);
    EXPECT_EQ(Content(from), "x");
}

// Links to a file, to a directory and to nothing; false where none can be made.
bool MakeLinks(const fs::path& directory) {
    constexpr DWORD unprivileged = 2; // SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE
    const auto link = [&](const char* name, const wchar_t* to, DWORD flags) {
        const fs::path path = directory / name;
        if (!CreateSymbolicLinkW(path.c_str(), to, flags | unprivileged))
            return false;
        const DWORD attributes = GetFileAttributesW(path.c_str()); // Wine only says that it makes links
        return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    };
    return link("to-file", L"a", 0) && link("to-directory", L"d", SYMBOLIC_LINK_FLAG_DIRECTORY) &&
           link("dangling", L"missing", 0);
}

TEST(MoveWindows, ALinkStaysAndBlocksItsName) {
    const helpers::ScratchFiles scratch;
    const std::wstring file = scratch.Write("a", "x");
    fs::create_directory(scratch.Directory() / "d");
    if (!MakeLinks(scratch.Directory()))
        GTEST_SKIP() << "Wine differs: links cannot be made";
    for (const char* const name : {"to-file", "to-directory", "dangling"}) {
        const std::wstring link = scratch.Path(name);
        EXPECT_EQ(platform::MoveWithoutReplacing(link.c_str(), scratch.Path("b").c_str()), MoveResult::stays);
        EXPECT_FALSE(platform::RemoveFile(link.c_str()));
        EXPECT_EQ(platform::MoveWithoutReplacing(file.c_str(), link.c_str()), MoveResult::nameBlocked);
        EXPECT_NE(GetFileAttributesW(link.c_str()), INVALID_FILE_ATTRIBUTES) << name;
    }
    EXPECT_EQ(Content(file), "x");
}

TEST(MoveWindows, AFileThatMayNotBeWrittenIsMovedButNotRemoved) {
    const helpers::ScratchFiles scratch;
    const std::wstring from = scratch.Write("a", "x");
    const std::wstring to = scratch.Path("b");
    ASSERT_NE(SetFileAttributesW(from.c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_EQ(platform::MoveWithoutReplacing(from.c_str(), to.c_str()), MoveResult::moved);
    EXPECT_FALSE(platform::RemoveFile(to.c_str()));
    EXPECT_EQ(Content(to), "x");
    SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_NORMAL);
}

} // namespace
