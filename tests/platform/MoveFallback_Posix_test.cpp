// SPDX-License-Identifier: MIT
// Moves on file systems and kernels that cannot rename without replacing, or that know no hard links.
#include "tests/platform/MoveFixture_Posix.h"

namespace {

namespace fs = std::filesystem;

using platform::moveCalls;
using platform::systemMoveCalls;

// The three answers of systems that do not know the flag.
const decltype(moveCalls.renameNoReplace) withoutFlag[] = {FailWith<EINVAL>, FailWith<ENOSYS>,
                                                           FailWith<EOPNOTSUPP>};

class MoveFallback : public MoveFixture {
  protected:
    MoveFallback() { moveCalls.renameNoReplace = FailWith<EINVAL>; }
};

class MoveWithoutLinks : public MoveFallback {
  protected:
    MoveWithoutLinks() { moveCalls.link = FailWith<EPERM>; }
};

TEST_F(MoveFallback, AFileIsMovedByASecondLink) {
    for (const auto call : withoutFlag) {
        moveCalls.renameNoReplace = call;
        Write("a", "x");
        EXPECT_TRUE(Move("a", "b"));
        EXPECT_EQ(Read("a"), "(none)");
        EXPECT_EQ(Read("b"), "x");
        EXPECT_EQ(fs::hard_link_count("b"), 1u);
        unlink("b");
    }
}

TEST_F(MoveFallback, ALinkStaysAndBlocksItsName) {
    Write("a", "x");
    fs::create_symlink("a", "link");
    EXPECT_EQ(Try("link", "b"), MoveResult::stays);
    EXPECT_EQ(Try("a", "link"), MoveResult::nameBlocked);
    EXPECT_EQ(Read("a"), "x");
}

TEST_F(MoveFallback, AnExistingTargetIsNotReplaced) {
    Write("a", "x");
    Write("b", "y");
    EXPECT_FALSE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_EQ(Read("b"), "y");
}

TEST_F(MoveFallback, AFileThatBearsTheNameStaysAndCountsAsMoved) {
    Write("a", "x");
    EXPECT_TRUE(Move("a", "a"));
    EXPECT_TRUE(Move("./a", "a"));
    EXPECT_EQ(Read("a"), "x");
}

TEST_F(MoveFallback, ATargetThatAppearsInTheMeantimeIsNotReplaced) {
    moveCalls.link = [](const char* from, const char* to) {
        Write(to, "theirs");
        return systemMoveCalls.link(from, to);
    };
    Write("a", "x");
    EXPECT_FALSE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_EQ(Read("b"), "theirs");
}

TEST_F(MoveFallback, AFileThatCannotLoseItsNameKeepsItAndLosesTheNewOne) {
    moveCalls.unlink = [](const char* path) {
        return std::string(path) == "a" ? FailWith<EPERM>(path) : systemMoveCalls.unlink(path);
    };
    Write("a", "x");
    EXPECT_FALSE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_EQ(Read("b"), "(none)");
}

TEST_F(MoveFallback, AFileThatWasReplacedInTheMeantimeIsLeftToItsOwner) {
    moveCalls.link = [](const char* from, const char* to) {
        const int result = systemMoveCalls.link(from, to);
        Write("new", "theirs");
        fs::rename("new", from);
        return result;
    };
    Write("a", "x");
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "theirs");
    EXPECT_EQ(Read("b"), "x");
}

// A link that cannot be for such a reason says the same of a placeholder, which others would see for a moment.
TEST_F(MoveFallback, OnlyWhereLinksAreUnknownIsAPlaceholderTried) {
    static int renames;
    renames = 0;
    moveCalls.openUnnamed = FailWith<EOPNOTSUPP>;
    moveCalls.rename = [](const char* from, const char* to) {
        ++renames;
        return systemMoveCalls.rename(from, to);
    };
    for (const auto call :
         {FailWith<EEXIST, const char*, const char*>, FailWith<EXDEV, const char*, const char*>,
          FailWith<ENOENT, const char*, const char*>}) {
        moveCalls.link = call;
        Write("a", "x");
        EXPECT_FALSE(Move("a", "b"));
        EXPECT_EQ(Read("a"), "x");
        EXPECT_EQ(Entries("."), 1);
    }
    EXPECT_EQ(renames, 0);
}

TEST_F(MoveFallback, AFileThatVanishedIsNotMoved) {
    moveCalls.renameNoReplace = [](const char* from, const char*) {
        unlink(from);
        return FailWith<EINVAL>();
    };
    Write("a", "x");
    EXPECT_EQ(Try("a", "b"), MoveResult::stays);
    EXPECT_EQ(Read("b"), "(none)");
}

TEST_F(MoveWithoutLinks, AFileIsMovedOverAPlaceholder) {
    Write("a", "x");
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "(none)");
    EXPECT_EQ(Read("b"), "x");
}

TEST_F(MoveWithoutLinks, AnExistingTargetIsNotReplaced) {
    Write("a", "x");
    Write("b", "y");
    EXPECT_FALSE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_EQ(Read("b"), "y");
}

TEST_F(MoveWithoutLinks, ATargetThatAppearsInTheMeantimeIsNotReplaced) {
    moveCalls.link = [](const char*, const char* to) {
        Write(to, "theirs");
        return FailWith<EPERM>();
    };
    Write("a", "x");
    EXPECT_FALSE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_EQ(Read("b"), "theirs");
}

TEST_F(MoveWithoutLinks, AFailedMoveLeavesNoPlaceholder) {
    moveCalls.rename = FailWith<EACCES>;
    Write("a", "x");
    EXPECT_FALSE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_EQ(Read("b"), "(none)");
}

TEST_F(MoveWithoutLinks, APlaceholderThatSomebodyWroteToStays) {
    moveCalls.rename = [](const char* from, const char* to) {
        Write(to, "theirs");
        return FailWith<EACCES>(from);
    };
    Write("a", "x");
    EXPECT_FALSE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_EQ(Read("b"), "theirs");
}

// Left behind by a run that was killed, or put there by one of another machine.
TEST_F(MoveWithoutLinks, AnEmptyFileBlocksTheNameOfOneWithContent) {
    Write("a", "x");
    Write("empty", "");
    Write("b", "");
    EXPECT_EQ(Try("a", "b"), MoveResult::nameBlocked);
    EXPECT_FALSE(RemoveInFavourOf("a", "b"));
    EXPECT_EQ(Read("a"), "x");
    EXPECT_EQ(Try("empty", "b"), MoveResult::nameTaken);
    EXPECT_TRUE(RemoveInFavourOf("empty", "b"));
    EXPECT_EQ(Entries("."), 2);
}

// As of a file system that takes the flag, but refuses only where it would really rename.
TEST_F(MoveWithoutLinks, SoItDoesWhereTheNameIsFoundTakenBeforeTheFlagIs) {
    moveCalls.renameNoReplace = [](const char* from, const char* to) {
        return fs::exists(to) ? FailWith<EEXIST>(from) : FailWith<EINVAL>(from);
    };
    Write("a", "x");
    Write("b", "");
    EXPECT_EQ(Try("a", "b"), MoveResult::nameBlocked);
    EXPECT_FALSE(RemoveInFavourOf("a", "b"));
    Write("b", "y");
    EXPECT_EQ(Try("a", "b"), MoveResult::nameTaken);
    EXPECT_TRUE(RemoveInFavourOf("a", "b"));
}

// A placeholder is seen by no other run: that would wait for the lock.
TEST_F(MoveWithoutLinks, ThePlaceholderStandsUnderTheLockOfTheDirectory) {
    moveCalls.rename = [](const char* from, const char* to) {
        EXPECT_EQ(Read(to), "");
        EXPECT_TRUE(IsLocked("."));
        return systemMoveCalls.rename(from, to);
    };
    Write("a", "x");
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_FALSE(IsLocked("."));
}

// What was a placeholder when it was looked at is a file now, which another run has moved there.
TEST_F(MoveWithoutLinks, WhatBecameAnotherFileBeforeTheLockStays) {
    moveCalls.renameNoReplace = [](const char* from, const char*) {
        Write("new", "theirs");
        fs::rename("new", from);
        return FailWith<EINVAL>();
    };
    Write("a", "");
    EXPECT_EQ(Try("a", "b"), MoveResult::stays);
    EXPECT_EQ(Read("a"), "theirs");
    EXPECT_EQ(Read("b"), "(none)");
}

TEST_F(MoveWithoutLinks, NothingIsMovedWhereNoPlaceholderCanBe) {
    Write("a", "x");
    EXPECT_FALSE(Move("a", "missing/b"));
    EXPECT_EQ(Read("a"), "x");
}

} // namespace
