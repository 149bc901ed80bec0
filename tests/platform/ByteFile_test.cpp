// SPDX-License-Identifier: MIT
#include "platform/ByteFile.h"

#include "platform/Tree.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <vector>

namespace {

using platform::ByteFile;
using platform::EntryKind;

// A name in UTF-8 that no Windows code page holds, and one that is longer than Windows' usual
// limit.
constexpr const char* anyName = "\xc3\xa4\xe2\x82\xac\xe6\xbc\xa2.txt";
const std::string longName = std::string(200, 'n');

class ByteFiles : public testing::Test {
  protected:
    void SetUp() override {
        directory_ = std::filesystem::temp_directory_path().generic_string() + "/fyrn-test-bytefile-" +
                     testing::UnitTest::GetInstance()->current_test_info()->name();
        Remove();
        std::filesystem::create_directory(Path(directory_));
    }

    void TearDown() override { Remove(); }

    // What the standard library cannot remove, because its path is too long for it, stays.
    void Remove() const {
        std::error_code ignored;
        std::filesystem::remove_all(Path(directory_), ignored);
    }

    static std::filesystem::path Path(const std::string& utf8) {
        return {std::u8string(utf8.begin(), utf8.end())};
    }

    std::string Write(const std::string& name, const std::string& content) const {
        const std::string path = directory_ + "/" + name;
        std::ofstream(Path(path), std::ios::binary) << content;
        return path;
    }

    std::string directory_;
};

TEST_F(ByteFiles, AreReadWithoutTranslation) {
    const std::string path = Write(anyName, std::string("a\r\nb\x1a\0c", 7));
    int error = -1;
    char buffer[100];
    ByteFile file = ByteFile::Open(path, error);
    ASSERT_EQ(error, 0);
    std::int64_t left = 0;
    EXPECT_EQ(file.Look(left), ByteFile::Kind::regular);
    EXPECT_EQ(left, 7);
    EXPECT_EQ(file.Read(buffer, sizeof buffer, error), 7);
    EXPECT_EQ(std::string(buffer, 7), std::string("a\r\nb\x1a\0c", 7));
    EXPECT_EQ(file.Read(buffer, sizeof buffer, error), 0);
}

TEST_F(ByteFiles, ThatCannotBeReadSayWhy) {
    int error = 0;
    EXPECT_FALSE(ByteFile::Open(directory_ + "/none", error));
    EXPECT_EQ(error, ENOENT);
    ByteFile file = ByteFile::Open(directory_, error);
    char byte;
    if (file) { // a directory opens on POSIX systems
        EXPECT_EQ(file.Read(&byte, 1, error), -1);
    }
    EXPECT_EQ(error, EISDIR);
}

TEST_F(ByteFiles, StandInDirectoriesUnderTheirBytes) {
    Write(anyName, "12345");
    std::filesystem::create_directory(Path(directory_ + "/sub"));
    std::vector<std::pair<std::string, EntryKind>> found;
    ASSERT_EQ(platform::ListDirectory(
                  directory_, [&](std::string_view name, EntryKind kind) { found.emplace_back(name, kind); }),
              0);
    std::sort(found.begin(), found.end());
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0], std::pair(std::string("sub"), EntryKind::directory));
    EXPECT_EQ(found[1], std::pair(std::string(anyName), EntryKind::regular));
    EXPECT_EQ(platform::ListDirectory(directory_ + "/none", [](std::string_view, EntryKind) {}), ENOENT);
    platform::EntryStatus status;
    ASSERT_EQ(platform::LookAt(directory_ + "/" + anyName, false, status), 0);
    EXPECT_EQ(status.kind, EntryKind::regular);
    EXPECT_EQ(status.size, 5u);
    EXPECT_EQ(platform::LookAt(directory_ + "/none", false, status), ENOENT);
}

TEST_F(ByteFiles, LieAsDeepAsTheSystemLets) {
    std::string path = directory_ + "/" + longName + "/" + longName;
    std::error_code failure;
    std::filesystem::create_directories(Path(path), failure);
    if (failure)
        GTEST_SKIP() << "the test cannot make such directories: " << failure.message();
    const std::string inner = longName + "/" + longName + "/f";
    Write(inner, "deep");
    int error = 0;
    char buffer[10];
    ByteFile file = ByteFile::Open(directory_ + "/" + inner, error);
    ASSERT_EQ(error, 0);
    EXPECT_EQ(file.Read(buffer, sizeof buffer, error), 4);
    std::size_t count = 0;
    EXPECT_EQ(platform::ListDirectory(path, [&](std::string_view, EntryKind) { ++count; }), 0);
    EXPECT_EQ(count, 1u);
}

TEST(LengthOfDirectory, IsWhatStandsBeforeTheLastComponent) {
    EXPECT_EQ(platform::LengthOfDirectory("name"), 0u);
    EXPECT_EQ(platform::LengthOfDirectory("a/b"), 2u);
    EXPECT_EQ(platform::LengthOfDirectory("a/b/"), 4u);
    EXPECT_EQ(platform::LengthOfDirectory(""), 0u);
}

} // namespace
