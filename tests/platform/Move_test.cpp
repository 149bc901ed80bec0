// SPDX-License-Identifier: MIT
// Moving and removing as they are on every system.
#include "platform/File.h"

#include "tests/helpers/ScratchFiles.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace {

namespace fs = std::filesystem;

using platform::MoveResult;

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
    EXPECT_EQ(platform::MoveWithoutReplacing(L"a", L"b"), MoveResult::moved);
    EXPECT_FALSE(fs::exists("a"));
    EXPECT_EQ(Content("b"), "x");
}

TEST_F(Move, ANewNameWithoutDirectoryIsOneInTheCurrentDirectory) {
    fs::create_directory("sub");
    scratch.Write("sub/a", "x");
    EXPECT_EQ(platform::MoveWithoutReplacing(scratch.Path("sub/a").c_str(), L"b"), MoveResult::moved);
    EXPECT_FALSE(fs::exists("sub/a"));
    EXPECT_EQ(Content("b"), "x");
}

TEST_F(Move, AnExistingTargetIsNotReplaced) {
    scratch.Write("a", "x");
    scratch.Write("b", "y");
    fs::create_directory("d");
    EXPECT_EQ(platform::MoveWithoutReplacing(L"a", L"b"), MoveResult::nameTaken);
    EXPECT_EQ(platform::MoveWithoutReplacing(L"a", L"d"), MoveResult::nameTaken);
    EXPECT_EQ(Content("a"), "x");
    EXPECT_EQ(Content("b"), "y");
}

TEST_F(Move, AnEmptyFileHasItsNameLikeAnyOther) {
    scratch.Write("a", "x");
    scratch.Write("b", "");
    EXPECT_EQ(platform::MoveWithoutReplacing(L"a", L"b"), MoveResult::nameTaken);
    EXPECT_TRUE(platform::RemoveInFavourOf(L"a", L"b"));
    EXPECT_EQ(Content("b"), "");
    EXPECT_FALSE(fs::exists("a"));
}

TEST_F(Move, AFileThatBearsTheNameStaysAndCountsAsMoved) {
    const std::wstring whole = scratch.Write("a", "x");
    EXPECT_EQ(platform::MoveWithoutReplacing(L"a", L"a"), MoveResult::moved);
    EXPECT_EQ(platform::MoveWithoutReplacing(whole.c_str(), L"a"), MoveResult::moved);
    EXPECT_EQ(Content("a"), "x");
}

TEST_F(Move, WhatIsNotThereOrHasNoNameCannotBeMoved) {
    scratch.Write("a", "x");
    EXPECT_EQ(platform::MoveWithoutReplacing(L"missing", L"b"), MoveResult::stays);
    EXPECT_EQ(platform::MoveWithoutReplacing(L"", L"b"), MoveResult::stays);
    EXPECT_EQ(platform::MoveWithoutReplacing(L"a", L""), MoveResult::failed);
    EXPECT_EQ(platform::MoveWithoutReplacing(L"a", L"missing/b"), MoveResult::failed);
    EXPECT_EQ(Content("a"), "x");
}

TEST_F(Move, AFileThatIsHeldOpenIsNeitherMovedNorRemoved) {
    scratch.Write("a", "x");
    platform::InputFile file = platform::OpenForReading(L"a");
    EXPECT_NE(platform::MoveWithoutReplacing(L"a", L"b"), MoveResult::moved);
    EXPECT_FALSE(platform::RemoveFile(L"a"));
    platform::Close(file);
    EXPECT_EQ(Content("a"), "x");
    EXPECT_EQ(platform::MoveWithoutReplacing(L"a", L"b"), MoveResult::moved);
}

TEST_F(Move, AFileIsRemoved) {
    scratch.Write("a", "x");
    EXPECT_TRUE(platform::RemoveFile(L"a"));
    EXPECT_FALSE(fs::exists("a"));
    EXPECT_FALSE(platform::RemoveFile(L"a"));
}

TEST_F(Move, AFileIsRemovedInFavourOfTheOneThatHasItsName) {
    scratch.Write("a", "x");
    scratch.Write("b", "x");
    fs::create_directory("d");
    EXPECT_TRUE(platform::RemoveInFavourOf(L"a", L"b"));
    EXPECT_FALSE(fs::exists("a"));
    EXPECT_FALSE(platform::RemoveInFavourOf(L"b", L"b"));
    EXPECT_EQ(Content("b"), "x");
    EXPECT_TRUE(platform::RemoveInFavourOf(L"b", L"d"));
    EXPECT_FALSE(fs::exists("b"));
}

TEST_F(Move, ADirectoryIsNeitherMovedNorRemoved) {
    fs::create_directory("d");
    EXPECT_EQ(platform::MoveWithoutReplacing(L"d", L"e"), MoveResult::stays);
    EXPECT_FALSE(platform::RemoveFile(L"d"));
    EXPECT_TRUE(fs::exists("d"));
}

} // namespace
