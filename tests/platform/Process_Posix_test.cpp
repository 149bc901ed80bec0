// SPDX-License-Identifier: MIT
#include "platform/Process.h"

#include "platform/Text.h"

#include <clocale>
#include <cwchar>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace {

TEST(ProcessPosix, ThePathIsThatOfTheRunningProgram) {
    wchar_t path[260];
    ASSERT_NE(platform::ExecutablePath(path, 260), 0u);
    EXPECT_TRUE(std::filesystem::equivalent(platform::EncodeName(path), "/proc/self/exe"));
}

TEST(ProcessPosix, TheComputersNameIsTheHosts) {
    char expected[300];
    ASSERT_EQ(gethostname(expected, sizeof expected), 0);
    const std::size_t length = std::string(expected).size();
    wchar_t name[300];
    ASSERT_TRUE(platform::ComputerName(name, length + 1));
    EXPECT_EQ(platform::EncodeName(name), expected);
    EXPECT_FALSE(platform::ComputerName(name, length));
}

TEST(ProcessPosix, OutputIsUtf8WithTheOriginalBytesInEveryLocale) {
    for (const char* const locale : {"C", "C.UTF-8"}) {
        ASSERT_NE(std::setlocale(LC_ALL, locale), nullptr);
        testing::internal::CaptureStdout();
        platform::WriteToStandardOutput(L"\x00E4\x20AC\x1F600\xDCFF|\n");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\xFF|\n");
    }
    std::setlocale(LC_ALL, "C");
}

TEST(ProcessPosix, TheOutputStreamStaysNarrow) {
    platform::WriteToStandardOutput(L"\x20AC\n");
    EXPECT_LE(std::fwide(stdout, 0), 0);
}

} // namespace
