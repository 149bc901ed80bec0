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
    ASSERT_TRUE(platform::MoveWithoutReplacing(from.c_str(), to.c_str()));
    EXPECT_FALSE(fs::exists(from));
    EXPECT_EQ(Content(to), content);
}

TEST_F(MoveToAnotherDrive, NothingIsReplaced) {
    const std::wstring from = scratch.Write("a", "x");
    const fs::path to = elsewhere / "b";
    std::ofstream(to) << "y";
    EXPECT_FALSE(platform::MoveWithoutReplacing(from.c_str(), to.c_str()));
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

TEST(MoveWindows, ADirectoryIsNotMoved) {
    const helpers::ScratchFiles scratch;
    fs::create_directory(scratch.Directory() / "d");
    EXPECT_FALSE(platform::MoveWithoutReplacing(scratch.Path("d").c_str(), scratch.Path("e").c_str()));
    EXPECT_TRUE(fs::exists(scratch.Directory() / "d"));
}

TEST(MoveWindows, AFileThatMayNotBeWrittenIsMovedButNotRemoved) {
    const helpers::ScratchFiles scratch;
    const std::wstring from = scratch.Write("a", "x");
    const std::wstring to = scratch.Path("b");
    ASSERT_NE(SetFileAttributesW(from.c_str(), FILE_ATTRIBUTE_READONLY), 0);
    EXPECT_TRUE(platform::MoveWithoutReplacing(from.c_str(), to.c_str()));
    EXPECT_FALSE(platform::RemoveFile(to.c_str()));
    EXPECT_EQ(Content(to), "x");
    SetFileAttributesW(to.c_str(), FILE_ATTRIBUTE_NORMAL);
}

} // namespace
