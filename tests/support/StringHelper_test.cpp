// SPDX-License-Identifier: MIT
#include "support/StringHelper.h"

#include "platform/Directory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace {

TEST(FormatToBuffer, KeepsWhatFitsAndReturnsZeroWhenItCuts) {
    wchar_t buffer[11] = L"~~~~~~~~~~";
    EXPECT_EQ(FormatToBuffer(buffer, 10, L"%s", L"twenty characters ..."), 0);
    EXPECT_STREQ(buffer, L"twenty ch");
    EXPECT_EQ(buffer[10], L'\0');
}

TEST(FormatToBuffer, ReturnsTheLengthOfATextThatFits) {
    wchar_t buffer[10];
    EXPECT_EQ(FormatToBuffer(buffer, 10, L"%S-%i", "abc", 42), 6);
    EXPECT_STREQ(buffer, L"abc-42");
    EXPECT_EQ(FormatToBuffer(buffer, 10, L"nine char"), 9);
    EXPECT_STREQ(buffer, L"nine char");
    EXPECT_EQ(FormatToBuffer(buffer, 10, L""), 0);
    EXPECT_STREQ(buffer, L"");
}

TEST(FormatToBuffer, WritesNothingIntoNoBuffer) {
    wchar_t buffer[2] = L"~";
    EXPECT_EQ(FormatToBuffer(nullptr, 10, L"text"), 0);
    EXPECT_EQ(FormatToBuffer(buffer, 0, L"text"), 0);
    EXPECT_STREQ(buffer, L"~");
    EXPECT_EQ(FormatToBuffer(buffer, 1, L"text"), 0);
    EXPECT_STREQ(buffer, L"");
}

std::wstring WithSeparators(std::wstring text) {
    for (wchar_t& character : text)
        character = character == L'|' ? platform::pathSeparator : character;
    return text;
}

int FindIn(const std::wstring& text, int start) {
    return ReverseFindNoCase(WithSeparators(text).c_str(), 0, start);
}

TEST(ReverseFindNoCase, FindsNothingWhereThereIsNoSeparator) {
    EXPECT_EQ(FindIn(L"name", 4), -1);
    EXPECT_EQ(FindIn(L"name", -1), -1);
    EXPECT_EQ(FindIn(L"", 0), -1);
    EXPECT_EQ(FindIn(L"", -1), -1);
    EXPECT_EQ(ReverseFindNoCase(nullptr, 0, -1), -1);
}

TEST(ReverseFindNoCase, FindsTheLastSeparatorAtOrBeforeTheStart) {
    const std::wstring path = L"|ab|cd|ef";
    EXPECT_EQ(FindIn(path, 9), 6);
    EXPECT_EQ(FindIn(path, 6), 6);
    EXPECT_EQ(FindIn(path, 5), 3);
    EXPECT_EQ(FindIn(path, 3), 3);
    EXPECT_EQ(FindIn(path, 0), 0);
    EXPECT_EQ(FindIn(L"ab|cd", 1), -1);
}

TEST(ReverseFindNoCase, StartsAtTheEndWithANegativeOrTooLargeStart) {
    EXPECT_EQ(FindIn(L"|ab|cd", -1), 3);
    EXPECT_EQ(FindIn(L"|ab|", -7), 3);
    EXPECT_EQ(FindIn(L"|ab|cd", 1000), 3);
    EXPECT_EQ(FindIn(L"|", -1), 0);
}

TEST(ReverseFindNoCase, KnowsNoOtherSeparator) {
    const wchar_t other = platform::pathSeparator == L'/' ? L'\\' : L'/';
    EXPECT_EQ(FindIn(std::wstring(L"a|b") + other + L"c", -1), 1);
}

TEST(CompareNoCase, TakesTextsForEqualThatDifferInAsciiCaseOnly) {
    EXPECT_EQ(CompareNoCase(L"SHA2-256", L"sha2-256"), 0);
    EXPECT_EQ(CompareNoCase(L"azAZ", L"AZaz"), 0);
    EXPECT_EQ(CompareNoCase(L"x", L"x"), 0);
}

TEST(CompareNoCase, TellsTheFirstDifference) {
    EXPECT_EQ(CompareNoCase(L"abc", L"abd"), ~2);
    EXPECT_EQ(CompareNoCase(L"ABD", L"abc"), 3);
    EXPECT_EQ(CompareNoCase(L"a", L"B"), ~0);
    EXPECT_EQ(CompareNoCase(L"b", L"A"), 1);
    EXPECT_EQ(CompareNoCase(L"_", L"A"), ~0) << "an underscore sorts before lower-case letters";
}

TEST(CompareNoCase, SortsATextBeforeItsContinuation) {
    EXPECT_EQ(CompareNoCase(L"abc", L"ABCD"), ~3);
    EXPECT_EQ(CompareNoCase(L"ABCD", L"abc"), 4);
}

TEST(CompareNoCase, SortsNullAndEmptyTextsFirst) {
    for (const wchar_t* nothing : {static_cast<const wchar_t*>(nullptr), L""}) {
        EXPECT_EQ(CompareNoCase(nothing, nullptr), 0);
        EXPECT_EQ(CompareNoCase(nothing, L""), 0);
        EXPECT_EQ(CompareNoCase(nothing, L"a"), -1);
        EXPECT_EQ(CompareNoCase(L"a", nothing), 1);
    }
}

TEST(ToLowerAscii, FoldsTheLettersOfAsciiOnly) {
    for (int i = 0; i < 26; ++i)
        EXPECT_EQ(ToLowerAscii(static_cast<wchar_t>(L'A' + i)), static_cast<wchar_t>(L'a' + i));
    for (wchar_t character : {L'@', L'[', L'`', L'a', L'z', L'0', L'\xc4', L'\x130', L'\x212a'})
        EXPECT_EQ(ToLowerAscii(character), character);
}

TEST(SafeMemmove, CutsToTheCapacityAndWarns) {
    unsigned char destination[48];
    unsigned char source[64];
    for (unsigned char i = 0; i < 64; ++i)
        source[i] = static_cast<unsigned char>(i + 1);
    std::fill(std::begin(destination), std::end(destination), static_cast<unsigned char>(0xee));
    DebugLog log = L"before|";
    Safe_memmove(destination, 32, source, 64, &log);
    for (unsigned char i = 0; i < 32; ++i)
        EXPECT_EQ(destination[i], i + 1);
    for (unsigned char i = 32; i < 48; ++i)
        EXPECT_EQ(destination[i], 0xee);
    EXPECT_EQ(log, L"before|Safe_memmove(pvDst, 32, pvSrc, 64) : Warning = dst size too small\n");
}

TEST(SafeMemmove, CutsInSilenceWithoutALog) {
    char destination[8] = "~~~~~~~";
    Safe_memmove(destination, 3, "abcdef", 6, nullptr);
    EXPECT_STREQ(destination, "abc~~~~");
}

TEST(SafeMemmove, MovesTheWholeSourceWhereThereIsRoom) {
    char destination[8] = "~~~~~~~";
    DebugLog log;
    Safe_memmove(destination, 7, "abc", 3, &log);
    EXPECT_STREQ(destination, "abc~~~~");
    Safe_memmove(destination, 7, "ABCDEFG", 7, &log);
    EXPECT_STREQ(destination, "ABCDEFG");
    EXPECT_EQ(log, L"");
}

TEST(SafeMemmove, MovesOverlappingBytesEitherWay) {
    char up[] = "abcdefgh";
    Safe_memmove(up + 2, 6, up, 6, nullptr);
    EXPECT_STREQ(up, "ababcdef");
    char down[] = "abcdefgh";
    Safe_memmove(down, 8, down + 2, 6, nullptr);
    EXPECT_STREQ(down, "cdefghgh");
}

TEST(SafeMemmove, MovesNothingWhereThereIsNoRoomOrNoSource) {
    DebugLog log;
    Safe_memmove(nullptr, 0, "abc", 3, &log);
    EXPECT_EQ(log, L"Safe_memmove(pvDst, 0, pvSrc, 3) : Warning = dst size too small\n");
    char destination[] = "x";
    Safe_memmove(destination, 1, nullptr, 0, &log);
    EXPECT_STREQ(destination, "x");
}

} // namespace
