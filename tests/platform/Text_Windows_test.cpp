// SPDX-License-Identifier: MIT
// Text in the locale of a program that has not chosen one: its characters are the first 256.
#include "platform/Text.h"

#include "platform/File.h"
#include "platform/Process.h"
#include "tests/helpers/ScratchFiles.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace {

TEST(TextWindows, EveryCharacterIsOneByteAndAQuestionMarkStandsForWhatTheLocaleLacks) {
    for (unsigned code = 1; code <= 0xFFFF; ++code) {
        char bytes[platform::maxEncodedCharacter];
        ASSERT_EQ(platform::EncodeCharacter(static_cast<wchar_t>(code), bytes), 1u) << code;
        ASSERT_EQ(static_cast<unsigned char>(bytes[0]), code < 256 ? code : '?') << code;
    }
}

TEST(TextWindows, EveryByteIsDecodedToTheCharacterThatItEncodes) {
    for (unsigned code = 1; code < 256; ++code) {
        const char byte = static_cast<char>(code);
        EXPECT_EQ(platform::DecodeName(std::string_view(&byte, 1)),
                  std::wstring(1, static_cast<wchar_t>(code)));
    }
}

TEST(TextWindows, NoLineEndIsLostBehindACharacterThatTheLocaleLacks) {
    testing::internal::CaptureStdout();
    platform::WriteToStandardOutput(L"\x20ac\x4e00.txt\n");
    platform::WriteToStandardOutput(L"\xD83D\xDE00\n\nend\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "??.txt\n??\n\nend\n"); // read as text
}

TEST(TextWindows, AppendedLinesEndInCarriageReturnAndLineFeed) {
    const helpers::ScratchFiles scratch;
    const std::wstring path = scratch.Path("log");
    ASSERT_TRUE(platform::AppendText(path.c_str(), L"a\x20ac\n\n"));
    ASSERT_TRUE(platform::AppendText(path.c_str(), L"\xe4\n"));
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "a?\r\n\r\n\xe4\r\n");
}

} // namespace
