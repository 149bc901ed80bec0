// SPDX-License-Identifier: MIT
// Moving and removing as they are on every system.
#include "platform/File.h"

#include "tests/helpers/ScratchFiles.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace {

namespace fs = std::filesystem;

class Move : public testing::Test {
  protected:
    Move() { fs::current_path(scratch.Directory()); }
    ~Move() override { fs::current_path(scratch.Directory().root_path()); }

    static std::string Content(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    helpers::ScratchFiles scratch;
};

TEST_F(Move, AFileGetsItsNewName) {
    scratch.Write("a", "x");
    EXPECT_TRUE(platform::MoveWithoutReplacing(L"a", L"b"));
    EXPECT_FALSE(fs::exists("a"));
    EXPECT_EQ(Content("b"), "x");
}

TEST_F(Move, ANewNameWithoutDirectoryIsOneInTheCurrentDirectory) {
    fs::create_directory("sub");
    scratch.Write("sub/a", "x");
    EXPECT_TRUE(platform::MoveWithoutReplacing(scratch.Path("sub/a").c_str(), L"b"));
    EXPECT_FALSE(fs::exists("sub/a"));
    EXPECT_EQ(Content("b"), "x");
}

TEST_F(Move, AnExistingTargetIsNotReplaced) {
    scratch.Write("a", "x");
    scratch.Write("b", "y");
    fs::create_directory("d");
    EXPECT_FALSE(platform::MoveWithoutReplacing(L"a", L"b"));
    EXPECT_FALSE(platform::MoveWithoutReplacing(L"a", L"d"));
    EXPECT_EQ(Content("a"), "x");
    EXPECT_EQ(Content("b"), "y");
}

TEST_F(Move, AFileThatBearsTheNameStaysAndCountsAsMoved) {
    const std::wstring whole = scratch.Write("a", "x");
    EXPECT_TRUE(platform::MoveWithoutReplacing(L"a", L"a"));
    EXPECT_TRUE(platform::MoveWithoutReplacing(whole.c_str(), L"a"));
    EXPECT_EQ(Content("a"), "x");
}

TEST_F(Move, WhatIsNotThereOrHasNoNameCannotBeMoved) {
    scratch.Write("a", "x");
    EXPECT_FALSE(platform::MoveWithoutReplacing(L"missing", L"b"));
    EXPECT_FALSE(platform::MoveWithoutReplacing(L"", L"b"));
    EXPECT_FALSE(platform::MoveWithoutReplacing(L"a", L""));
    EXPECT_FALSE(platform::MoveWithoutReplacing(L"a", L"missing/b"));
    EXPECT_EQ(Content("a"), "x");
}

TEST_F(Move, AFileThatIsHeldOpenIsNeitherMovedNorRemoved) {
    scratch.Write("a", "x");
    platform::InputFile file = platform::OpenForReading(L"a");
    EXPECT_FALSE(platform::MoveWithoutReplacing(L"a", L"b"));
    EXPECT_FALSE(platform::RemoveFile(L"a"));
    platform::Close(file);
    EXPECT_EQ(Content("a"), "x");
    EXPECT_TRUE(platform::MoveWithoutReplacing(L"a", L"b"));
}

TEST_F(Move, AFileIsRemoved) {
    scratch.Write("a", "x");
    EXPECT_TRUE(platform::RemoveFile(L"a"));
    EXPECT_FALSE(fs::exists("a"));
    EXPECT_FALSE(platform::RemoveFile(L"a"));
}

TEST_F(Move, ADirectoryIsNotRemoved) {
    fs::create_directory("d");
    EXPECT_FALSE(platform::RemoveFile(L"d"));
    EXPECT_TRUE(fs::exists("d"));
}

} // namespace
