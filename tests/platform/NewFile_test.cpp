// SPDX-License-Identifier: MIT
#include "platform/NewFile.h"

#include "platform/ByteFile.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>

namespace {

using platform::ByteFile;
using platform::NewFile;

class NewFiles : public testing::Test {
  protected:
    static std::string Content(const std::string& name) {
        int error = 0;
        char buffer[100];
        ByteFile file = ByteFile::Open(name, error);
        EXPECT_EQ(error, 0);
        const std::ptrdiff_t count = error == 0 ? file.Read(buffer, sizeof buffer, error) : 0;
        return {buffer, static_cast<std::size_t>(count)};
    }

    static std::size_t FilesThere(const std::string& directory) {
        std::size_t count = 0;
        EXPECT_EQ(platform::ListDirectory(directory, [&](std::string_view, platform::EntryKind) { ++count; }),
                  0);
        return count;
    }

    void SetUp() override {
        directory_ = std::filesystem::temp_directory_path().string() + "/fyrn-test-newfile-" +
                     testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::remove_all(directory_);
        std::filesystem::create_directory(directory_);
        name_ = directory_ + "/name";
    }

    void TearDown() override { std::filesystem::remove_all(directory_); }

    std::string directory_;
    std::string name_;
};

TEST_F(NewFiles, HaveTheirNameWhenTheyAreComplete) {
    NewFile file;
    platform::EntryStatus status;
    ASSERT_EQ(file.Create(name_), 0);
    ASSERT_EQ(file.Write("text"), 0);
    EXPECT_EQ(platform::LookAt(name_, true, status), ENOENT);
    const platform::FileIdentity identity = file.Identity();
    ASSERT_EQ(file.Complete(), 0);
    EXPECT_EQ(Content(name_), "text");
    ASSERT_EQ(platform::LookAt(name_, true, status), 0);
    EXPECT_EQ(status.identity, identity);
    EXPECT_EQ(FilesThere(directory_), 1u);
}

TEST_F(NewFiles, TakeThePlaceOfOlderOnes) {
    for (const char* const text : {"first", "second"}) {
        NewFile file;
        ASSERT_EQ(file.Create(name_), 0);
        ASSERT_EQ(file.Write(text), 0);
        ASSERT_EQ(file.Complete(), 0);
        EXPECT_EQ(Content(name_), text);
    }
    EXPECT_EQ(FilesThere(directory_), 1u);
}

TEST_F(NewFiles, GoAwayWhenTheyAreNotCompleted) {
    {
        NewFile file;
        ASSERT_EQ(file.Create(name_), 0);
        ASSERT_EQ(file.Write("text"), 0);
    }
    EXPECT_EQ(FilesThere(directory_), 0u);
}

TEST_F(NewFiles, NeedTheirDirectory) {
    NewFile file;
    EXPECT_EQ(file.Create(directory_ + "/none/name"), ENOENT);
}

} // namespace
