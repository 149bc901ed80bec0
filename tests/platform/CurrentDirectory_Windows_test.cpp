// SPDX-License-Identifier: MIT
#include "platform/Directory.h"

#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>
#include <string>

namespace {

TEST(CurrentDirectoryWindows, AnAbsolutePathHasADriveAndItsRootOrAServer) {
    for (const wchar_t* const path :
         {L"C:\\", L"c:/a", L"\\\\server\\share", L"//server/share", L"\\\\?\\C:\\a"})
        EXPECT_TRUE(platform::IsAbsolute(path)) << path;
    for (const wchar_t* const path : {L"", L"a", L"C", L"C:", L"C:a", L"\\", L"\\a", L"/a", L".\\a", L"a\\b"})
        EXPECT_FALSE(platform::IsAbsolute(path)) << path;
}

TEST(CurrentDirectoryWindows, AfterALostStartAnotherDirectoryMayBeWalked) {
    wchar_t before[platform::maxPath];
    ASSERT_TRUE(platform::CurrentDirectory(before, platform::maxPath));
    const helpers::ScratchFiles scratch;
    for (const char* const name : {"start", "a", "b"})
        std::filesystem::create_directory(scratch.Directory() / name);
    std::filesystem::current_path(scratch.Directory() / "start");
    ASSERT_TRUE(platform::EnterDirectory(scratch.Path("a").c_str()));
    ASSERT_TRUE(std::filesystem::remove(scratch.Directory() / "start"));
    EXPECT_FALSE(platform::LeaveDirectory(scratch.Path("start").c_str()));
    wchar_t current[platform::maxPath];
    ASSERT_TRUE(platform::CurrentDirectory(current, platform::maxPath));
    ASSERT_TRUE(platform::EnterDirectory(scratch.Path("b").c_str()));
    EXPECT_TRUE(platform::LeaveDirectory(current));
    std::filesystem::current_path(before);
}

} // namespace
