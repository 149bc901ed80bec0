// SPDX-License-Identifier: MIT
#include "platform/Process.h"

#include <gtest/gtest.h>
#include <string>

namespace {

TEST(Process, TheExecutableKnowsItsPath) {
    wchar_t path[260];
    const std::size_t length = platform::ExecutablePath(path, 260);
    EXPECT_EQ(std::wstring(path).size(), length);
    EXPECT_NE(std::wstring(path).find(L"fyrn_platform_tests"), std::wstring::npos);
}

TEST(Process, APathThatDoesNotFitIsSaidToFillTheBuffer) {
    wchar_t path[260];
    const std::size_t length = platform::ExecutablePath(path, 260);
    EXPECT_EQ(platform::ExecutablePath(path, length + 1), length);
    EXPECT_EQ(platform::ExecutablePath(path, length), length);
    EXPECT_EQ(platform::ExecutablePath(path, 1), 1u);
}

TEST(Process, TheComputerHasAName) {
    wchar_t name[300];
    ASSERT_TRUE(platform::ComputerName(name, 300));
    EXPECT_GT(std::wstring(name).size(), 0u);
}

TEST(Process, AComputerNameThatDoesNotFitIsNotTold) {
    wchar_t name[300];
    EXPECT_FALSE(platform::ComputerName(name, 1));
}

TEST(Process, TextIsWrittenToStandardOutput) {
    testing::internal::CaptureStdout();
    platform::WriteToStandardOutput(L"one ");
    platform::WriteToStandardOutput(L"");
    platform::WriteToStandardOutput(std::wstring(3000, L'x').c_str());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "one " + std::string(3000, 'x'));
}

} // namespace
