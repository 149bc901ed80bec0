// SPDX-License-Identifier: MIT
// Files that somebody else has open, and what the system refuses because of it.
#include "platform/File.h"

#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>
#include <vector>
#include <windows.h>

namespace {

// Opens a file beside the program's own ways.
class ForeignHandle {
  public:
    ForeignHandle(const std::wstring& path, DWORD access, DWORD sharing)
        : handle_(CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {}
    ~ForeignHandle() { CloseHandle(handle_); }
    ForeignHandle(const ForeignHandle&) = delete;
    ForeignHandle& operator=(const ForeignHandle&) = delete;

    bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool LocksFirstByte() const { return LockFile(handle_, 0, 0, 1, 0) != 0; }

  private:
    HANDLE handle_;
};

bool CanBeOpened(const std::wstring& path) {
    platform::InputFile file = platform::OpenForReading(path.c_str());
    const bool opened = static_cast<bool>(file);
    if (opened)
        platform::Close(file);
    return opened;
}

bool RunsOnWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version") != nullptr;
}

class Sharing : public testing::Test {
  protected:
    helpers::ScratchFiles scratch;
    const std::wstring path = scratch.Write("a", "x");
};

TEST_F(Sharing, AFileThatOthersReadIsRead) {
    const ForeignHandle other(path, GENERIC_READ, FILE_SHARE_READ);
    ASSERT_TRUE(other.IsOpen());
    EXPECT_TRUE(CanBeOpened(path));
}

TEST_F(Sharing, AFileThatSomebodyKeepsToHimselfCannotBeOpened) {
    const ForeignHandle other(path, GENERIC_READ, 0);
    ASSERT_TRUE(other.IsOpen());
    EXPECT_FALSE(CanBeOpened(path));
}

TEST_F(Sharing, AFileThatSomebodyWritesCannotBeOpened) {
    if (RunsOnWine())
        GTEST_SKIP() << "Wine differs: _wfopen_s opens a file that somebody writes";
    const ForeignHandle other(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(other.IsOpen());
    EXPECT_FALSE(CanBeOpened(path));
}

TEST_F(Sharing, NobodyWritesAFileWhileItIsRead) {
    if (RunsOnWine())
        GTEST_SKIP() << "Wine differs: a file opened by _wfopen_s may be written by others";
    platform::InputFile file = platform::OpenForReading(path.c_str());
    const ForeignHandle other(path, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_FALSE(other.IsOpen());
    platform::Close(file);
}

TEST_F(Sharing, AFileThatSomebodyHasOpenIsNeitherMovedNorRemoved) {
    const ForeignHandle other(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_TRUE(other.IsOpen());
    EXPECT_EQ(platform::MoveWithoutReplacing(path.c_str(), scratch.Path("b").c_str()),
              platform::MoveResult::failed);
    EXPECT_FALSE(platform::RemoveFile(path.c_str()));
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_FALSE(std::filesystem::exists(scratch.Path("b")));
}

TEST_F(Sharing, AFileThatTheRuntimeHasNoStreamForIsNeitherMovedNorRemoved) {
    const std::wstring late = scratch.Write("late", "x");
    const std::wstring other = scratch.Write("other", "x");
    std::vector<platform::InputFile> files;
    do
        files.push_back(platform::OpenForReading(path.c_str()));
    while (files.back() && files.size() < 10000);
    const bool opened = static_cast<bool>(platform::OpenForReading(late.c_str()));
    for (platform::InputFile& file : files)
        if (file)
            platform::Close(file);
    EXPECT_FALSE(opened);
    EXPECT_EQ(platform::MoveWithoutReplacing(late.c_str(), scratch.Path("b").c_str()),
              platform::MoveResult::failed);
    EXPECT_FALSE(platform::RemoveFile(late.c_str()));
    EXPECT_TRUE(std::filesystem::exists(late));
    EXPECT_EQ(platform::MoveWithoutReplacing(other.c_str(), scratch.Path("c").c_str()),
              platform::MoveResult::moved);
}

// As between two runs with different digests.
TEST_F(Sharing, NoFileIsRemovedInFavourOfOneThatSomebodyMayBeRemoving) {
    const std::wstring other = scratch.Write("other", "x");
    {
        const ForeignHandle removing(other, DELETE, FILE_SHARE_READ | FILE_SHARE_DELETE);
        EXPECT_FALSE(platform::RemoveInFavourOf(path.c_str(), other.c_str()));
        EXPECT_TRUE(std::filesystem::exists(path));
    }
    EXPECT_TRUE(platform::RemoveInFavourOf(path.c_str(), other.c_str()));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(Sharing, AFileWithAReadErrorIsNeitherMovedNorRemovedAfterItIsClosed) {
    {
        const ForeignHandle other(path, GENERIC_READ, FILE_SHARE_READ);
        ASSERT_TRUE(other.LocksFirstByte());
        platform::InputFile file = platform::OpenForReading(path.c_str());
        ASSERT_TRUE(file);
        unsigned char byte;
        if (platform::ReadFully(file, &byte, 1) != 0)
            GTEST_SKIP() << "Wine differs: a locked byte can be read";
        platform::Close(file);
    }
    EXPECT_EQ(platform::MoveWithoutReplacing(path.c_str(), scratch.Path("b").c_str()),
              platform::MoveResult::failed);
    EXPECT_FALSE(platform::RemoveFile(path.c_str()));
    EXPECT_TRUE(std::filesystem::exists(path));
}

} // namespace
