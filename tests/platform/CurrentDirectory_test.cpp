// SPDX-License-Identifier: MIT
#include "platform/Directory.h"

#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>
#include <string>

namespace {

std::wstring Current() {
    wchar_t buffer[platform::maxPath];
    return platform::CurrentDirectory(buffer, platform::maxPath) ? buffer : L"(unknown)";
}

class CurrentDirectory : public testing::Test {
  protected:
    CurrentDirectory() { std::filesystem::create_directories(scratch.Directory() / "a" / "b"); }

    helpers::ScratchFiles scratch;
};

TEST_F(CurrentDirectory, AWalkEntersAndLeavesDirectories) {
    const std::wstring start = Current();
    ASSERT_TRUE(platform::EnterDirectory(scratch.Path("a").c_str()));
    const std::wstring first = Current();
    EXPECT_TRUE(first.ends_with(L"a"));
    ASSERT_TRUE(platform::EnterDirectory(L"b"));
    EXPECT_EQ(Current(), first + platform::pathSeparator + L"b");
    EXPECT_TRUE(platform::LeaveDirectory(first.c_str()));
    EXPECT_EQ(Current(), first);
    EXPECT_TRUE(platform::LeaveDirectory(start.c_str()));
    EXPECT_EQ(Current(), start);
}

TEST_F(CurrentDirectory, WhatIsNoDirectoryIsNotEntered) {
    const std::wstring start = Current();
    EXPECT_FALSE(platform::EnterDirectory(scratch.Path("missing").c_str()));
    EXPECT_FALSE(platform::EnterDirectory(scratch.Write("file", "x").c_str()));
    EXPECT_FALSE(platform::EnterDirectory(L""));
    EXPECT_EQ(Current(), start);
}

TEST_F(CurrentDirectory, ADirectoryIsWalkedAsOftenAsItIsMet) {
    const std::wstring start = Current();
    for (int i = 0; i < 3; ++i) {
        ASSERT_TRUE(platform::EnterDirectory(scratch.Path("a").c_str()));
        EXPECT_TRUE(platform::LeaveDirectory(start.c_str()));
    }
}

// However it is called: a walk would go round in it.
TEST_F(CurrentDirectory, ADirectoryThatIsBeingWalkedIsNotEnteredAgain) {
    const std::wstring start = Current();
    const std::wstring a = scratch.Path("a");
    ASSERT_TRUE(platform::EnterDirectory(a.c_str()));
    ASSERT_TRUE(platform::EnterDirectory(L"b"));
    EXPECT_FALSE(platform::EnterDirectory(a.c_str()));
    EXPECT_FALSE(platform::EnterDirectory((a + platform::pathSeparator).c_str()));
    EXPECT_FALSE(platform::EnterDirectory(L".."));
    EXPECT_FALSE(platform::EnterDirectory(L"."));
    EXPECT_TRUE(Current().ends_with(L"b"));
    EXPECT_TRUE(platform::LeaveDirectory(a.c_str()));
    EXPECT_TRUE(platform::EnterDirectory(L"b")); // it was left
    EXPECT_TRUE(platform::LeaveDirectory(a.c_str()));
    EXPECT_TRUE(platform::LeaveDirectory(start.c_str()));
}

TEST_F(CurrentDirectory, LeavingWithoutAWalkFails) {
    EXPECT_FALSE(platform::LeaveDirectory(Current().c_str()));
}

TEST_F(CurrentDirectory, ABufferThatIsTooSmallIsTold) {
    const std::wstring current = Current();
    std::wstring buffer(current.size() + 1, L'x');
    EXPECT_TRUE(platform::CurrentDirectory(buffer.data(), buffer.size()));
    EXPECT_STREQ(buffer.c_str(), current.c_str());
    EXPECT_FALSE(platform::CurrentDirectory(buffer.data(), current.size()));
}

} // namespace
