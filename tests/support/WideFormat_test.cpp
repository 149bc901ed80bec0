// SPDX-License-Identifier: MIT
#include "support/WideFormat.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>

namespace {

TEST(WideFormat, CopiesPlainTextAndPercentSigns) {
    EXPECT_EQ(FormatText(L""), L"");
    EXPECT_EQ(FormatText(L"plain\n"), L"plain\n");
    EXPECT_EQ(FormatText(L"100%% and %%s"), L"100% and %s");
    EXPECT_EQ(FormatText(L"%%"), L"%");
}

TEST(WideFormat, TakesWideTextForSmallSAndNarrowTextForLargeS) {
    EXPECT_EQ(FormatText(L"%s|%S", L"wide", "narrow"), L"wide|narrow");
    EXPECT_EQ(FormatText(L"%ls|%hs", L"wide", "narrow"), L"wide|narrow");
    EXPECT_EQ(FormatText(L"%s%s", L"", L"\x20ac"), L"\x20ac");
}

TEST(WideFormat, WidensNarrowBytesOneToOne) {
    std::string bytes;
    std::wstring expected;
    for (unsigned int byte = 1; byte < 256; ++byte) {
        bytes.push_back(static_cast<char>(byte));
        expected.push_back(static_cast<wchar_t>(byte));
    }
    EXPECT_EQ(FormatText(L"%S", bytes.c_str()), expected);
}

TEST(WideFormat, PrintsNullTextsAsNull) {
    const wchar_t* const noWide = nullptr;
    const char* const noNarrow = nullptr;
    EXPECT_EQ(FormatText(L"%s|%S|%8s|%-8S|", noWide, noNarrow, noWide, noNarrow),
              L"(null)|(null)|  (null)|(null)  |");
}

TEST(WideFormat, PadsTextToItsWidth) {
    EXPECT_EQ(FormatText(L"[%5s][%-5s][%2s]", L"abc", L"abc", L"abc"), L"[  abc][abc  ][abc]");
    EXPECT_EQ(FormatText(L"[%5S][%-5S][%3S]", "abc", "abc", "abc"), L"[  abc][abc  ][abc]");
    EXPECT_EQ(FormatText(L"[%12s]", L"twelve"), L"[      twelve]");
    EXPECT_EQ(FormatText(L"[%3c][%-3c]", L'x', 'y'), L"[  x][y  ]");
}

TEST(WideFormat, PrintsSignedIntegers) {
    EXPECT_EQ(FormatText(L"%i %d %i", 0, -1, 42), L"0 -1 42");
    EXPECT_EQ(FormatText(L"%i %i", std::numeric_limits<int>::min(), std::numeric_limits<int>::max()),
              L"-2147483648 2147483647");
    EXPECT_EQ(FormatText(L"%I64d %lld", std::numeric_limits<std::int64_t>::min(), std::int64_t{-5}),
              L"-9223372036854775808 -5");
    EXPECT_EQ(FormatText(L"%I64i", -7), L"-7");
}

TEST(WideFormat, PrintsUnsignedAndHexadecimalIntegers) {
    EXPECT_EQ(FormatText(L"%u %x %X", 4294967295u, 0xbeefu, 0xbeefu), L"4294967295 beef BEEF");
    EXPECT_EQ(FormatText(L"%u %x", 0, 0), L"0 0");
    EXPECT_EQ(FormatText(L"%u", -1), L"4294967295");
    EXPECT_EQ(FormatText(L"%I64u %llu", std::numeric_limits<std::uint64_t>::max(), std::uint64_t{7}),
              L"18446744073709551615 7");
    EXPECT_EQ(FormatText(L"%I64x %llx %I64X", 0x123456789abcdefu, std::uint64_t{15}, 0xfedcba9876543210u),
              L"123456789abcdef f FEDCBA9876543210");
}

TEST(WideFormat, PadsNumbersWithSpacesOrZeros) {
    EXPECT_EQ(FormatText(L"[%5i][%05i][%-5i][%-05i]", 42, 42, 42, 42), L"[   42][00042][42   ][42   ]");
    EXPECT_EQ(FormatText(L"[%5i][%05i][%-5i][%1i]", -42, -42, -42, -42), L"[  -42][-0042][-42  ][-42]");
    EXPECT_EQ(FormatText(L"[%02x][%08X][%4x]", 0xau, 0xbeefu, 0xau), L"[0a][0000BEEF][   a]");
    EXPECT_EQ(FormatText(L"[%020I64u]", std::uint64_t{1} << 63), L"[09223372036854775808]");
}

TEST(WideFormat, TakesTheLowHalfOfA64BitValueForA32BitConversion) {
    constexpr std::uint64_t value = 0x1234'5678'8000'0001;
    EXPECT_EQ(FormatText(L"%i %u %x", value, value, value), L"-2147483647 2147483649 80000001");
}

TEST(WideFormat, PrintsAnAddressAsSixteenUpperCaseDigits) {
    const void* const address = reinterpret_cast<const void*>(std::uintptr_t{0x1234abcd});
    const void* const nowhere = nullptr;
    EXPECT_EQ(FormatText(L"0x%p", address), L"0x000000001234ABCD");
    EXPECT_EQ(FormatText(L"%p", nowhere), L"0000000000000000");
    EXPECT_EQ(FormatText(L"[%18p][%-18p]", address, address), L"[  000000001234ABCD][000000001234ABCD  ]");
}

TEST(WideFormat, PrintsAnyArgumentWithAnyConversion) {
    const void* const address = reinterpret_cast<const void*>(std::uintptr_t{0x1234abcd});
    EXPECT_EQ(FormatText(L"%i", address), L"305441741");
    EXPECT_EQ(FormatText(L"%s|%S", address, address), L"(null)|(null)");
    EXPECT_EQ(FormatText(L"%s|%S", "narrow", L"wide"), L"(null)|(null)");
    EXPECT_EQ(FormatText(L"%s|%S", 5, 5), L"(null)|(null)");
    const wchar_t* const text = L"text";
    EXPECT_EQ(FormatText(L"%p", text), FormatText(L"%p", static_cast<const void*>(text)));
    EXPECT_EQ(FormatText(L"%c%c", L'a', 'b'), L"ab");
}

TEST(WideFormat, TakesMissingArgumentsForZero) {
    EXPECT_EQ(FormatText(L"%s %S %i %u", L"one"), L"one (null) 0 0");
    EXPECT_EQ(FormatText(L"%p %I64x"), L"0000000000000000 0");
}

TEST(WideFormat, IgnoresArgumentsWithoutConversion) {
    EXPECT_EQ(FormatText(L"%i", 1, 2, L"three"), L"1");
    EXPECT_EQ(FormatText(L"none", L"text"), L"none");
}

TEST(WideFormat, PrintsWhatIsNoConversionAsItStands) {
    EXPECT_EQ(FormatText(L"50% of %i", 7), L"50% of 7");
    EXPECT_EQ(FormatText(L"%-3q|%i", 7), L"%-3q|7");
    EXPECT_EQ(FormatText(L"end%"), L"end%");
    EXPECT_EQ(FormatText(L"end%-08"), L"end%-08");
    EXPECT_EQ(FormatText(L"end%I64"), L"end%I64");
    const wchar_t* const noFormat = nullptr;
    EXPECT_EQ(FormatText(noFormat, 1), L"");
}

TEST(WideFormat, CutsAtEveryCapacityAndTellsTheWholeLength) {
    const std::array<FormatArgument, 5> arguments{L"wide", "narrow", -42, std::uint64_t{1} << 40, L'c'};
    constexpr auto format = L"<%6s|%-8S|%06i|%I64u|%c>%%";
    const std::wstring whole = L"<  wide|narrow  |-00042|1099511627776|c>%";
    for (std::size_t capacity = 1; capacity <= whole.size() + 3; ++capacity) {
        std::wstring buffer(capacity + 1, L'~');
        EXPECT_EQ(FormatWide(buffer.data(), capacity, format, arguments.data(), arguments.size()),
                  whole.size());
        EXPECT_EQ(std::wstring(buffer.c_str()), whole.substr(0, capacity - 1));
        EXPECT_EQ(buffer[capacity], L'~') << "written behind a capacity of " << capacity;
    }
    EXPECT_EQ(FormatWide(nullptr, 0, format, arguments.data(), arguments.size()), whole.size());
}

TEST(WideFormat, BoundsAHugeWidthByTheCapacity) {
    wchar_t buffer[8];
    const FormatArgument argument(1);
    EXPECT_EQ(FormatWide(buffer, 8, L"%4000000000i", &argument, 1), 4'000'000'000u);
    EXPECT_STREQ(buffer, L"       ");
}

TEST(WideFormat, FormatsTextOfAnyLength) {
    const std::wstring longText(1'000'000, L'x');
    EXPECT_EQ(FormatText(L"[%s]", longText.c_str()), L"[" + longText + L"]");
}

} // namespace
