// SPDX-License-Identifier: MIT
#include "platform/Text.h"

#include <gtest/gtest.h>

namespace {

TEST(Text, AsciiIsKeptBothWays) {
    EXPECT_EQ(platform::DecodeName("a-Z 0~9.txt"), L"a-Z 0~9.txt");
    EXPECT_EQ(platform::EncodeName(L"a-Z 0~9.txt"), "a-Z 0~9.txt");
}

TEST(Text, AnEmptyTextStaysEmpty) {
    EXPECT_EQ(platform::DecodeName(""), L"");
    EXPECT_EQ(platform::EncodeName(L""), "");
}

TEST(Text, ATextThatFillsTheBufferExactlyIsDecoded) {
    wchar_t buffer[4];
    ASSERT_TRUE(platform::DecodeInto("abc", buffer, 4));
    EXPECT_STREQ(buffer, L"abc");
}

TEST(Text, ATextThatDoesNotFitLeavesAnEmptyOne) {
    wchar_t buffer[4] = L"xyz";
    EXPECT_FALSE(platform::DecodeInto("abcd", buffer, 4));
    EXPECT_STREQ(buffer, L"");
}

TEST(Text, NothingIsWrittenBehindTheBuffer) {
    wchar_t buffer[6] = L"vwxyz";
    EXPECT_FALSE(platform::DecodeInto("abcdefgh", buffer, 4));
    EXPECT_STREQ(buffer + 4, L"z");
}

TEST(Text, NothingFitsIntoABufferWithoutCapacity) {
    wchar_t untouched = L'x';
    EXPECT_FALSE(platform::DecodeInto("", &untouched, 0));
    EXPECT_EQ(untouched, L'x');
}

} // namespace
