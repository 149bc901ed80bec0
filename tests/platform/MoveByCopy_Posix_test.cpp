// SPDX-License-Identifier: MIT
// Moves to another file system: shared memory where that is one of its own, else a file system that is mounted
// for the test. Failures of the copy are tested within one file system, behind calls that tell otherwise.
#include "tests/platform/MoveFixture_Posix.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <thread>

namespace {

namespace fs = std::filesystem;

using platform::moveCalls;
using platform::systemMoveCalls;

bool IsCopy(const std::string& path) {
    return path.find("/.fyrn-") != std::string::npos;
}

int RenameCopiesOnly(const char* from, const char* to) {
    return IsCopy(from) ? systemMoveCalls.renameNoReplace(from, to) : FailWith<EXDEV>(from);
}

// With a copy that has no name until it is complete, and with one that has a temporary one.
class MoveByCopy : public MoveFixture, public testing::WithParamInterface<bool> {
  protected:
    MoveByCopy() {
        if (GetParam())
            moveCalls.openUnnamed = FailWith<EOPNOTSUPP>;
        moveCalls.renameNoReplace = RenameCopiesOnly;
        Write("a", "content");
    }

    // Nothing has changed: the file is there, and there is no trace of a copy.
    void ExpectUnmoved() const {
        EXPECT_FALSE(Move("a", "b"));
        EXPECT_EQ(Read("a"), "content");
        EXPECT_EQ(Read("b"), "(none)");
        EXPECT_EQ(Entries("."), 1);
    }
};

TEST_P(MoveByCopy, TheCopyHasTheFilesContentModeAndTimes) {
    ASSERT_EQ(chmod("a", 04751), 0);
    const timespec times[] = {{1000000001, 123456789}, {1000000002, 987654321}};
    ASSERT_EQ(utimensat(AT_FDCWD, "a", times, 0), 0);
    ASSERT_TRUE(Move("a", "b"));
    struct stat status;
    ASSERT_EQ(stat("b", &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 04751u);
    EXPECT_EQ(status.st_mtim.tv_sec, 1000000002);
    EXPECT_EQ(status.st_mtim.tv_nsec, 987654321);
    EXPECT_EQ(Read("b"), "content");
    EXPECT_EQ(Entries("."), 1);
}

TEST_P(MoveByCopy, ALargeFileIsCopiedWhole) {
    std::string text;
    for (int i = 0; i < 100000; ++i)
        text += std::to_string(i);
    Write("a", text);
    ASSERT_TRUE(Move("a", "b"));
    EXPECT_TRUE(Read("b") == text);
}

TEST_P(MoveByCopy, WritesThatAreInterruptedOrShortAreContinued) {
    moveCalls.write = [](int descriptor, const void* bytes, std::size_t count) -> ssize_t {
        static int calls = 0;
        return ++calls % 2 == 1 ? FailWith<EINTR>(count) : systemMoveCalls.write(descriptor, bytes, 1);
    };
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(Read("b"), "content");
}

TEST_P(MoveByCopy, WithoutTheOwnerTheRightsToActAsTheOwnerAreDropped) {
    ASSERT_EQ(chmod("a", 06755), 0);
    moveCalls.fchown = FailWith<EPERM>;
    ASSERT_TRUE(Move("a", "b"));
    struct stat status;
    ASSERT_EQ(stat("b", &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0755u);
}

TEST_P(MoveByCopy, AnExistingTargetIsNotReplaced) {
    Write("b", "y");
    EXPECT_FALSE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "content");
    EXPECT_EQ(Read("b"), "y");
    EXPECT_EQ(Entries("."), 2);
}

TEST_P(MoveByCopy, ATargetThatAppearsDuringTheCopyIsNotReplaced) {
    moveCalls.fsync = [](int descriptor) {
        Write("b", "theirs");
        return systemMoveCalls.fsync(descriptor);
    };
    EXPECT_EQ(Try("a", "b"), MoveResult::nameTaken);
    EXPECT_EQ(Read("a"), "content");
    EXPECT_EQ(Read("b"), "theirs");
    EXPECT_EQ(Entries("."), 2);
}

// As with two mounts of one file system.
TEST_P(MoveByCopy, AFileThatBearsTheNameStaysAndCountsAsMoved) {
    EXPECT_TRUE(Move("./a", "a"));
    EXPECT_EQ(Read("a"), "content");
}

TEST_P(MoveByCopy, AFullDiskLeavesTheFileAndNoCopyAndIsTriedOnce) {
    static int writes;
    writes = 0;
    moveCalls.write = [](int, const void*, std::size_t) -> ssize_t {
        ++writes;
        return FailWith<ENOSPC>();
    };
    ExpectUnmoved();
    EXPECT_EQ(writes, 1);
}

TEST_P(MoveByCopy, TheCopyIsForNobodyElseToReadBeforeItHasTheFilesMode) {
    const mode_t before = umask(0);
    static mode_t mode;
    mode = 0777;
    moveCalls.write = [](int descriptor, const void* bytes, std::size_t count) {
        struct stat status;
        if (fstat(descriptor, &status) == 0)
            mode = status.st_mode & 07777;
        return systemMoveCalls.write(descriptor, bytes, count);
    };
    ASSERT_EQ(chmod("a", 0644), 0);
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(mode, 0600u);
    EXPECT_EQ(fs::status("b").permissions(), fs::perms(0644));
    umask(before);
}

// What a run that is killed in the middle of a copy leaves behind.
TEST_P(MoveByCopy, OnlyATemporaryNameIsSeenBeforeTheCopyIsComplete) {
    static std::ptrdiff_t entries;
    moveCalls.write = [](int descriptor, const void* bytes, std::size_t count) {
        entries = Entries(".");
        EXPECT_FALSE(fs::exists("b"));
        return systemMoveCalls.write(descriptor, bytes, count);
    };
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(entries, GetParam() ? 2 : 1);
}

// Data of a block after holes of several sizes, and a hole at the end.
TEST_P(MoveByCopy, HolesAreKept) {
    constexpr off_t block = 4096;
    std::ofstream file("a");
    off_t end = 0;
    for (off_t hole : {1, 1, 2, 1000, 1}) {
        file.seekp(end + hole * block) << std::string(block, static_cast<char>('a' + hole % 7));
        end += (hole + 1) * block;
    }
    file.close();
    ASSERT_EQ(truncate("a", 2 * end), 0);
    const std::string text = Read("a");
    struct stat status;
    ASSERT_EQ(stat("a", &status), 0);
    ASSERT_EQ(status.st_size, 2 * end);
    const auto blocks = status.st_blocks;
    if (blocks >= end / 512)
        GTEST_SKIP() << "this file system has no holes";
    ASSERT_TRUE(Move("a", "b"));
    EXPECT_TRUE(Read("b") == text);
    ASSERT_EQ(stat("b", &status), 0);
    EXPECT_LE(status.st_blocks, blocks);
}

TEST_P(MoveByCopy, AFileThatIsOneHoleIsKept) {
    Write("a", "");
    ASSERT_EQ(truncate("a", 10'000'000), 0);
    ASSERT_TRUE(Move("a", "b"));
    EXPECT_TRUE(Read("b") == std::string(10'000'000, '\0'));
}

TEST_P(MoveByCopy, ANameThatNoFileCanHaveIsNotCopiedFor) {
    moveCalls.write = [](int, const void*, std::size_t) -> ssize_t {
        ADD_FAILURE();
        return FailWith<ENOSPC>();
    };
    EXPECT_EQ(Try("a", std::string(256, 'b')), MoveResult::failed);
}

TEST_P(MoveByCopy, TheNameIsGivenAndTheOriginalRemovedUnderTheLock) {
    moveCalls.unlink = [](const char* path) {
        EXPECT_TRUE(IsLocked("."));
        return systemMoveCalls.unlink(path);
    };
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "(none)");
}

TEST_P(MoveByCopy, ADiskThatDoesNotTakeTheDataLeavesTheFileAndNoCopy) {
    moveCalls.fsync = FailWith<EIO>;
    ExpectUnmoved();
}

TEST_P(MoveByCopy, ACopyThatCannotGetItsNameIsRemoved) {
    moveCalls.nameUnnamed = FailWith<EPERM>;
    moveCalls.renameNoReplace = FailWith<EXDEV>;
    ExpectUnmoved();
}

TEST_P(MoveByCopy, AFileThatGrowsDuringTheCopyIsNotMoved) {
    moveCalls.fsync = [](int descriptor) {
        std::ofstream("a", std::ios::app) << "+";
        return systemMoveCalls.fsync(descriptor);
    };
    EXPECT_EQ(Try("a", "b"), MoveResult::stays);
    EXPECT_EQ(Read("a"), "content+");
    EXPECT_EQ(Entries("."), 1);
}

TEST_P(MoveByCopy, AFileThatIsRewrittenDuringTheCopyIsNotMoved) {
    moveCalls.fsync = [](int descriptor) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        Write("a", "CONTENT");
        return systemMoveCalls.fsync(descriptor);
    };
    EXPECT_EQ(Try("a", "b"), MoveResult::stays);
    EXPECT_EQ(Read("a"), "CONTENT");
    EXPECT_EQ(Entries("."), 1);
}

TEST_P(MoveByCopy, AFileThatWasReplacedAfterTheCopyIsLeftToItsOwner) {
    moveCalls.fsync = [](int descriptor) {
        struct stat status;
        if (fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode)) {
            Write("new", "theirs");
            fs::rename("new", "a");
        }
        return systemMoveCalls.fsync(descriptor);
    };
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "theirs");
    EXPECT_EQ(Read("b"), "content");
}

TEST_P(MoveByCopy, AFileThatCannotBeRemovedStaysBesideItsCopy) {
    moveCalls.unlink = FailWith<EPERM>;
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "content");
    EXPECT_EQ(Read("b"), "content");
}

TEST_P(MoveByCopy, AFileStaysBesideACopyWhoseNameMayNotBeOnTheDisk) {
    moveCalls.fsync = [](int descriptor) {
        struct stat status;
        const bool isDirectory = fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
        return isDirectory ? FailWith<EIO>(descriptor) : systemMoveCalls.fsync(descriptor);
    };
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(Read("a"), "content");
    EXPECT_EQ(Read("b"), "content");
}

TEST_P(MoveByCopy, TemporaryFilesOfOtherRunsAreNotTouched) {
    const std::string left = "./.fyrn-" + std::to_string(getpid()) + "-0.tmp";
    Write(left, "left");
    EXPECT_TRUE(Move("a", "b"));
    EXPECT_EQ(Read("b"), "content");
    EXPECT_EQ(Read(left), "left");
}

TEST_P(MoveByCopy, WithoutAPlaceForTheCopyTheFileIsNotMoved) {
    EXPECT_FALSE(Move("a", "missing/b"));
    EXPECT_EQ(Read("a"), "content");
}

TEST_P(MoveByCopy, ALinkStaysAndBlocksItsName) {
    fs::create_symlink("a", "link");
    EXPECT_EQ(Try("link", "b"), MoveResult::stays);
    EXPECT_EQ(Try("a", "link"), MoveResult::nameBlocked);
    EXPECT_EQ(Read("a"), "content");
    EXPECT_EQ(Read("b"), "(none)");
}

INSTANTIATE_TEST_SUITE_P(NamedOrNot, MoveByCopy, testing::Bool());

// A directory on another file system than the scratch files.
class OtherFileSystem {
  public:
    explicit OtherFileSystem(const helpers::ScratchFiles& scratch) {
        if (IsElsewhere("/dev/shm", scratch.Directory())) {
            directory_ = fs::path("/dev/shm") / scratch.Directory().filename();
            fs::create_directory(directory_);
        } else {
            directory_ = scratch.Directory() / "mounted";
            fs::create_directory(directory_);
            mounted_ = mount("none", directory_.c_str(), "tmpfs", 0, "size=1m") == 0;
            available_ = mounted_;
        }
    }
    ~OtherFileSystem() {
        if (mounted_)
            umount(directory_.c_str());
        fs::remove_all(directory_);
    }

    bool IsAvailable() const { return available_; }
    const fs::path& Directory() const { return directory_; }

  private:
    static bool IsElsewhere(const fs::path& a, const fs::path& b) {
        struct stat statusA;
        struct stat statusB;
        return stat(a.c_str(), &statusA) == 0 && stat(b.c_str(), &statusB) == 0 &&
               statusA.st_dev != statusB.st_dev && access(a.c_str(), W_OK) == 0;
    }

    fs::path directory_;
    bool mounted_ = false;
    bool available_ = true;
};

class MoveAcross : public MoveFixture {
  protected:
    void SetUp() override {
        if (!other.IsAvailable())
            GTEST_SKIP() << "no second file system, and none can be mounted";
    }
    std::string Other(const char* name) const { return (other.Directory() / name).string(); }

    OtherFileSystem other{scratch};
};

TEST_F(MoveAcross, AFileIsMovedThereAndBack) {
    Write("a", "content");
    EXPECT_TRUE(Move("a", Other("b")));
    EXPECT_EQ(Read("a"), "(none)");
    EXPECT_EQ(Read(Other("b")), "content");
    EXPECT_EQ(Entries(other.Directory()), 1);
    EXPECT_TRUE(Move(Other("b"), "c"));
    EXPECT_EQ(Read("c"), "content");
    EXPECT_EQ(Entries(other.Directory()), 0);
}

TEST_F(MoveAcross, AnExistingTargetIsNotReplaced) {
    Write("a", "content");
    Write(Other("b"), "y");
    EXPECT_FALSE(Move("a", Other("b")));
    EXPECT_EQ(Read("a"), "content");
    EXPECT_EQ(Read(Other("b")), "y");
}

TEST_F(MoveAcross, TheFileIsMovedWithoutLinksAndFlagsThereToo) {
    moveCalls.renameNoReplace = [](const char* from, const char*) {
        return IsCopy(from) ? FailWith<EINVAL>(from) : FailWith<EXDEV>(from);
    };
    moveCalls.link = FailWith<EPERM>;
    Write("a", "content");
    EXPECT_TRUE(Move("a", Other("b")));
    EXPECT_EQ(Read(Other("b")), "content");
}

TEST_F(MoveAcross, AnOldKernelsMoveGoesOverTheLinkToTheCopy) {
    moveCalls.renameNoReplace = FailWith<ENOSYS>;
    Write("a", "content");
    EXPECT_TRUE(Move("a", Other("b")));
    EXPECT_EQ(Read("a"), "(none)");
    EXPECT_EQ(Read(Other("b")), "content");
}

TEST_F(MoveAcross, AFullFileSystemLeavesTheFileAndNoCopy) {
    const fs::path small = scratch.Directory() / "small";
    fs::create_directory(small);
    if (mount("none", small.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "no file system can be mounted";
    Write("a", std::string(1000000, 'x'));
    EXPECT_FALSE(Move("a", "small/b"));
    EXPECT_EQ(Read("a").size(), 1000000u);
    EXPECT_EQ(Entries(small), 0);
    umount(small.c_str());
}

TEST_F(MoveAcross, ASecondMountOfTheDirectoryIsTheSamePlace) {
    const fs::path again = scratch.Directory() / "again";
    fs::create_directory("sub");
    fs::create_directory(again);
    if (mount("sub", again.c_str(), nullptr, MS_BIND, nullptr) != 0)
        GTEST_SKIP() << "no directory can be mounted";
    Write("sub/a", "content");
    EXPECT_TRUE(Move("sub/a", "again/a"));
    EXPECT_EQ(Read("sub/a"), "content");
    EXPECT_TRUE(Move("sub/a", "again/b"));
    EXPECT_EQ(Read("sub/b"), "content");
    EXPECT_EQ(Entries("sub"), 1);
    umount(again.c_str());
}

} // namespace
