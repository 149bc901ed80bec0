// SPDX-License-Identifier: MIT
#include "platform/Directory.h"

#include "platform/Text.h"
#include "tests/helpers/OpenDescriptors_Posix.h"
#include "tests/helpers/ScratchFiles.h"
#include "tests/platform/EndChild_Posix.h"

#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

std::wstring Current() {
    wchar_t buffer[platform::maxPath];
    return platform::CurrentDirectory(buffer, platform::maxPath) ? buffer : L"(unknown)";
}

bool Enter(const std::string& path) {
    return platform::EnterDirectory(platform::DecodeName(path).c_str());
}

bool Leave(const std::string& path) {
    return platform::LeaveDirectory(platform::DecodeName(path).c_str());
}

class CurrentDirectoryPosix : public testing::Test {
  protected:
    CurrentDirectoryPosix() {
        fs::create_directories(top / "a" / "b" / "c");
        fs::create_directories(top / "start");
        fs::current_path(top / "start");
    }
    ~CurrentDirectoryPosix() override { fs::current_path("/"); }

    std::string Path(const char* name) const { return (top / name).string(); }
    bool IsCurrent(const char* name) const { return fs::equivalent(".", top / name); }

    helpers::ScratchFiles scratch;
    fs::path top = scratch.Directory();
};

TEST_F(CurrentDirectoryPosix, ALinkBackUpIsNotEntered) {
    fs::create_directory_symlink(top / "a", top / "a" / "b" / "up");
    fs::create_directory_symlink(".", top / "a" / "b" / "self");
    ASSERT_TRUE(Enter(Path("a")));
    ASSERT_TRUE(Enter("b"));
    EXPECT_FALSE(Enter("up"));
    EXPECT_FALSE(Enter("self"));
    EXPECT_FALSE(Enter(".."));
    EXPECT_FALSE(Enter("."));
    EXPECT_TRUE(IsCurrent("a/b"));
    EXPECT_TRUE(Leave(Path("a")));
    EXPECT_TRUE(Leave(Path("start")));
}

TEST_F(CurrentDirectoryPosix, TheDirectoryThatAWalkStartsFromMayBeWalked) {
    ASSERT_TRUE(Enter("."));
    EXPECT_FALSE(Enter("."));
    EXPECT_TRUE(Leave(Path("start")));
}

TEST_F(CurrentDirectoryPosix, ALinkToAnotherDirectoryIsEntered) {
    fs::create_directory_symlink(top / "a" / "b", top / "link");
    ASSERT_TRUE(Enter(Path("link")));
    EXPECT_TRUE(IsCurrent("a/b"));
    EXPECT_TRUE(Leave(Path("start")));
    EXPECT_TRUE(IsCurrent("start"));
}

TEST_F(CurrentDirectoryPosix, TheStartIsFoundAgainAfterItWasRenamed) {
    ASSERT_TRUE(Enter(Path("a")));
    fs::rename(top / "start", top / "renamed");
    EXPECT_TRUE(Leave(Path("start")));
    EXPECT_TRUE(IsCurrent("renamed"));
}

TEST_F(CurrentDirectoryPosix, AnotherDirectoryUnderTheOldNameIsNotTakenForTheStart) {
    ASSERT_TRUE(Enter(Path("a")));
    fs::rename(top / "start", top / "renamed");
    fs::create_directory(top / "start");
    EXPECT_TRUE(Leave(Path("start")));
    EXPECT_TRUE(IsCurrent("renamed"));
}

TEST_F(CurrentDirectoryPosix, AnInnerWalkFindsItsParentAgainAfterItWasRenamed) {
    ASSERT_TRUE(Enter(Path("a")));
    ASSERT_TRUE(Enter("b"));
    fs::rename(top / "a", top / "renamed");
    EXPECT_TRUE(Leave(Path("a")));
    EXPECT_TRUE(IsCurrent("renamed"));
    EXPECT_TRUE(Leave(Path("start")));
    EXPECT_TRUE(IsCurrent("start"));
}

TEST_F(CurrentDirectoryPosix, ALostParentIsToldAndTheStartIsStillFound) {
    ASSERT_TRUE(Enter(Path("a")));
    ASSERT_TRUE(Enter("b"));
    fs::rename(top / "a" / "b", top / "elsewhere");
    fs::rename(top / "a", top / "renamed");
    EXPECT_FALSE(Leave(Path("a")));
    EXPECT_TRUE(Leave(Path("start")));
    EXPECT_TRUE(IsCurrent("start"));
}

TEST_F(CurrentDirectoryPosix, ACurrentDirectoryThatWasRemovedIsNotTold) {
    fs::remove(top / "start");
    EXPECT_EQ(Current(), L"(unknown)");
    EXPECT_TRUE(Enter(Path("a"))); // it may still be left, and found again by the descriptor
    EXPECT_TRUE(Leave(Path("start")));
}

TEST_F(CurrentDirectoryPosix, ADeepWalkHoldsOneDescriptor) {
    const std::size_t before = OpenDescriptors();
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(mkdir("d", 0700), 0);
        ASSERT_TRUE(Enter("d"));
    }
    EXPECT_EQ(OpenDescriptors(), before + 1);
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(Leave("..")) << i;
    EXPECT_EQ(OpenDescriptors(), before);
    EXPECT_TRUE(IsCurrent("start"));
}

TEST_F(CurrentDirectoryPosix, WhereNothingIsEnteredNoDescriptorStaysOpen) {
    const std::size_t before = OpenDescriptors();
    EXPECT_FALSE(Enter(Path("missing")));
    EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(CurrentDirectoryPosix, WithoutDescriptorsNothingIsEnteredAndEverythingIsLeft) {
    ASSERT_TRUE(Enter(Path("a")));
    rlimit before;
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none = {0, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    EXPECT_FALSE(Enter("b"));
    EXPECT_TRUE(Leave(Path("start")));
    EXPECT_FALSE(Enter(Path("a")));
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_TRUE(IsCurrent("start"));
}

TEST_F(CurrentDirectoryPosix, AnAbsolutePathBeginsAtTheRoot) {
    EXPECT_TRUE(platform::IsAbsolute(L"/"));
    EXPECT_TRUE(platform::IsAbsolute(L"/a"));
    for (const wchar_t* const path : {L"", L"a", L"./a", L"a/b", L"C:/a", L"\\a", L"\\\\a\\b"})
        EXPECT_FALSE(platform::IsAbsolute(path)) << path;
}

// Runs a check in a process of its own, as a user whom rights stop and whose directories these are.
void ExpectWithoutPrivileges(const fs::path& top, bool (*check)(const fs::path& top)) {
    constexpr uid_t nobody = 65534;
    const auto run = [&] {
        if (geteuid() == 0) {
            for (const auto& entry : fs::recursive_directory_iterator(top))
                if (chown(entry.path().c_str(), nobody, nobody) != 0)
                    EndChild(2);
            if (chown(top.c_str(), nobody, nobody) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)
                EndChild(3);
        }
        EndChild(check(top) ? 7 : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(7), "");
}

TEST_F(CurrentDirectoryPosix, ADirectoryThatCannotBeReadIsEnteredAndAlsoLeft) {
    ExpectWithoutPrivileges(top, [](const fs::path& place) {
        const fs::perms unreadable = fs::perms::owner_exec | fs::perms::owner_write;
        fs::permissions(place / "a", unreadable);
        fs::permissions(place / "start", unreadable);
        const bool entered = Enter((place / "a").string()) && Enter("b");
        fs::rename(place / "start", place / "renamed"); // only by its descriptor it is found again
        const bool left = Leave((place / "a").string()) && Leave((place / "start").string());
        return entered && left && fs::equivalent(".", place / "renamed");
    });
}

TEST_F(CurrentDirectoryPosix, WhereTheStartIsLostTheRootIsCurrentAndMayBeWalkedFrom) {
    ExpectWithoutPrivileges(top, [](const fs::path& place) {
        const bool entered = Enter((place / "a").string());
        fs::permissions(place / "start", fs::perms::none);
        fs::remove_all(place / "a");
        const bool lost = !Leave((place / "start").string()) && Current() == L"/";
        fs::create_directory(place / "c");
        return entered && lost && Enter((place / "c").string()) && Leave("/") && Current() == L"/";
    });
}

TEST_F(CurrentDirectoryPosix, ThePathIsDecodedAsUtf8WhateverTheLocale) {
    const std::string name = Path("\xC3\xA4\xFF");
    fs::create_directory(name);
    fs::current_path(name);
    EXPECT_TRUE(Current().ends_with(L"/\x00E4\xDCFF"));
}

TEST_F(CurrentDirectoryPosix, APathOf260CharactersDoesNotFit) {
    fs::current_path("/");
    const std::string longName(259 - top.string().size() - 1, 'x');
    fs::create_directory(top / longName);
    fs::create_directory(top / (longName + "y"));
    fs::current_path(top / longName);
    EXPECT_EQ(Current().size(), 259u);
    fs::current_path(top / (longName + "y"));
    EXPECT_EQ(Current(), L"(unknown)");
}

} // namespace
