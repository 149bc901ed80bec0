// SPDX-License-Identifier: MIT
#include "tests/platform/MoveFixture_Posix.h"

#include "platform/MoveNames_Posix.h"

#include <climits>
#include <fcntl.h>

namespace {

namespace fs = std::filesystem;

using MovePosix = MoveFixture;

TEST_F(MovePosix, AnotherHardLinkOfTheFileIsInTheWayLikeAnyFile) {
    Write("a", "x");
    fs::create_hard_link("a", "b");
    EXPECT_FALSE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_EQ(Read("b"), "x");
}

TEST_F(MovePosix, AFileWithSeveralLinksThatBearsTheNameStaysAndCountsAsMoved) {
    Write("a", "x");
    fs::create_hard_link("a", "b");
    EXPECT_TRUE(Move("a", "a"));
    EXPECT_TRUE(Move((scratch.Directory() / "a").string(), "a"));
    EXPECT_TRUE(Move("./a", "a"));
    EXPECT_EQ(Read("b"), "x");
}

TEST_F(MovePosix, AHardLinkOfTheSameNameElsewhereIsInTheWay) {
    fs::create_directory("sub");
    Write("a", "x");
    fs::create_hard_link("a", "sub/a");
    EXPECT_FALSE(Move("sub/a", "a"));
    EXPECT_EQ(Read("sub/a"), "x");
}

// Where the file system knows both spellings, even files that look alike are two.
TEST_F(MovePosix, NamesThatDifferInCaseAreTwo) {
    const timespec times[] = {{1, 0}, {1, 0}};
    for (const char* const directory : {"d", "D"})
        fs::create_directory(directory);
    for (const char* const name : {"d/a", "D/a", "d/A"}) {
        Write(name, "x");
        ASSERT_EQ(utimensat(AT_FDCWD, name, times, 0), 0);
    }
    EXPECT_EQ(Try("D/a", "d/a"), MoveResult::nameTaken);
    EXPECT_EQ(Try("d/A", "d/a"), MoveResult::nameTaken);
}

TEST_F(MovePosix, TheNameIsTheSameThroughALinkedDirectory) {
    fs::create_directory("sub");
    fs::create_directory_symlink("sub", "link");
    Write("sub/a", "x");
    EXPECT_TRUE(Move("link/a", "sub/a"));
    fs::create_hard_link("sub/a", "b");
    EXPECT_TRUE(Move("link/a", "sub/a"));
    EXPECT_EQ(Read("sub/a"), "x");
}

TEST_F(MovePosix, ALinkBlocksItsNameWhereverItLeads) {
    Write("a", "x");
    Write("other", "y");
    fs::create_directory("d");
    for (const char* const target : {"a", "other", "d", "missing", "link"}) {
        fs::create_symlink(target, "link");
        EXPECT_EQ(Try("a", "link"), MoveResult::nameBlocked) << target;
        EXPECT_EQ(fs::read_symlink("link"), target);
        unlink("link");
    }
    EXPECT_EQ(Read("a"), "x");
}

// An editor puts the new version of a file in the place of the old one.
TEST_F(MovePosix, AFileThatReplacedTheOneThatWasReadStays) {
    platform::InputFile file = platform::OpenForReading(scratch.Write("a", "x").c_str());
    platform::Close(file);
    Write("b", "y");
    Write("new", "theirs");
    fs::rename("new", "a");
    const std::string path = scratch.Directory() / "a";
    EXPECT_EQ(Try(path, "c"), MoveResult::stays);
    EXPECT_FALSE(RemoveInFavourOf(path, "b"));
    EXPECT_FALSE(Remove(path));
    EXPECT_EQ(Read("a"), "theirs");
    EXPECT_TRUE(Move("b", "c"));
}

TEST_F(MovePosix, AFileIsRemovedUnderTheLocksOfBothDirectories) {
    fs::create_directory("d");
    Write("d/a", "x");
    Write("b", "x");
    platform::moveCalls.unlink = [](const char* path) {
        EXPECT_TRUE(IsLocked(".") && IsLocked("d"));
        return platform::systemMoveCalls.unlink(path);
    };
    EXPECT_TRUE(RemoveInFavourOf("d/a", "b"));
    EXPECT_FALSE(IsLocked(".") || IsLocked("d"));
    EXPECT_EQ(Read("d/a"), "(none)");
    EXPECT_EQ(Read("b"), "x");
}

TEST_F(MovePosix, WhatKeepsADirectoryLockedIsNotWaitedForForEver) {
    Write("a", "x");
    Write("b", "x");
    const int descriptor = open(".", O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(descriptor, LOCK_EX), 0);
    EXPECT_FALSE(RemoveInFavourOf("a", "b"));
    close(descriptor);
    EXPECT_EQ(Read("a"), "x");
}

TEST_F(MovePosix, NothingIsRemovedInFavourOfWhatIsGoneOrALinkOrTheFileItself) {
    Write("a", "x");
    fs::create_symlink("missing", "link");
    EXPECT_FALSE(RemoveInFavourOf("a", "link"));
    EXPECT_FALSE(RemoveInFavourOf("a", "a"));
    EXPECT_FALSE(RemoveInFavourOf("a", "./a"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_FALSE(RemoveInFavourOf("a", "gone"));
    EXPECT_EQ(Read("gone"), "x") << "the name was free";
}

TEST_F(MovePosix, WhatIsNoFileStaysWhereItIs) {
    Write("a", "x");
    fs::create_directory("d");
    fs::create_symlink("a", "to-file");
    fs::create_symlink("d", "to-directory");
    fs::create_symlink("missing", "dangling");
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    fs::create_symlink("pipe", "to-pipe");
    for (const char* const name : {"d", "to-file", "to-directory", "dangling", "pipe", "to-pipe"}) {
        EXPECT_EQ(Try(name, "b"), MoveResult::stays) << name;
        EXPECT_FALSE(Remove(name)) << name;
        EXPECT_NE(fs::symlink_status(name).type(), fs::file_type::not_found) << name;
    }
}

// /dev/stdin and its like lead to ordinary files when the shell redirects from one.
TEST_F(MovePosix, NamesThatBelongToTheSystemStay) {
    Write("a", "x");
    const int descriptor = open("a", O_RDONLY);
    const std::string number = std::to_string(descriptor);
    for (const std::string& name :
         {"/proc/self/fd/" + number, "/dev/fd/" + number, std::string("/proc/self/exe")}) {
        EXPECT_EQ(Try(name, "b"), MoveResult::stays) << name;
        EXPECT_FALSE(Remove(name)) << name;
    }
    close(descriptor);
    EXPECT_EQ(Read("b"), "(none)");
    EXPECT_EQ(Read("a"), "x");
}

TEST_F(MovePosix, DirectoriesOfTheSystemAreTold) {
    for (const char* const path : {"/dev", "/dev/fd", "/dev/pts", "/dev/shmx", "/proc", "/proc/1/fd"})
        EXPECT_TRUE(platform::BelongsToSystem(path)) << path;
    for (const char* const path : {"/", "/devel", "/procedures/x", "/home/dev", "/dev/shm", "/dev/shm/x"})
        EXPECT_FALSE(platform::BelongsToSystem(path)) << path;
}

TEST_F(MovePosix, PathsAreSplitIntoDirectoryAndName) {
    const std::string rows[][3] = {{"a", ".", "a"},     {"./a", ".", "a"}, {"/a", "/", "a"},
                                   {"/d/a", "/d", "a"}, {"d/", "d", ""},   {"", ".", ""}};
    for (const auto& [path, parent, name] : rows) {
        const platform::SplitNativePath split(path.c_str());
        EXPECT_EQ(split.parent, parent) << path;
        EXPECT_EQ(split.name, name) << path;
    }
}

TEST_F(MovePosix, APathThatIsTooLongMovesNothing) {
    Write("a", "x");
    EXPECT_EQ(Try("a", std::string(PATH_MAX, 'b')), MoveResult::failed);
    EXPECT_EQ(Try("a", std::string(256, 'b')), MoveResult::failed);
    EXPECT_EQ(Read("a"), "x");
}

} // namespace
