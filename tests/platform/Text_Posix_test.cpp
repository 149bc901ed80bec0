// SPDX-License-Identifier: MIT
#include "platform/Text.h"

#include "platform/NativePath_Posix.h"

#include <gtest/gtest.h>
#include <random>
#include <string>

namespace {

using platform::DecodeName;
using platform::EncodeName;

// What bytes decode to when none of them is part of a valid character.
std::wstring Escaped(const std::string& bytes) {
    std::wstring text;
    for (const char byte : bytes)
        text.push_back(static_cast<wchar_t>(0xDC00 + static_cast<unsigned char>(byte)));
    return text;
}

// Every character by the definition in RFC 3629, section 3.
std::string Utf8(char32_t c) {
    const auto byte = [](char32_t bits) { return static_cast<char>(bits); };
    if (c < 0x80)
        return {byte(c)};
    if (c < 0x800)
        return {byte(0xC0 | c >> 6), byte(0x80 | (c & 63))};
    if (c < 0x10000)
        return {byte(0xE0 | c >> 12), byte(0x80 | (c >> 6 & 63)), byte(0x80 | (c & 63))};
    return {byte(0xF0 | c >> 18), byte(0x80 | (c >> 12 & 63)), byte(0x80 | (c >> 6 & 63)),
            byte(0x80 | (c & 63))};
}

TEST(TextPosix, EveryCodePointIsDecodedAndEncoded) {
    for (char32_t c = 1; c <= 0x10FFFF; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF)
            continue;
        const std::wstring text(1, static_cast<wchar_t>(c));
        ASSERT_EQ(DecodeName(Utf8(c)), text) << std::hex << static_cast<unsigned>(c);
        ASSERT_EQ(EncodeName(text), Utf8(c)) << std::hex << static_cast<unsigned>(c);
    }
}

TEST(TextPosix, BytesOutsideValidUtf8AreEscapedOneByOne) {
    const std::string invalid[] = {
        "\x80",             // a continuation byte alone
        "\xBF",             //
        "\xC0\xAF",         // overlong forms of "/"
        "\xE0\x80\xAF",     //
        "\xF0\x80\x80\xAF", //
        "\xC1\xBF",         // the largest overlong form of two bytes
        "\xE0\x9F\xBF",     // of three
        "\xF0\x8F\xBF\xBF", // of four
        "\xED\xA0\x80",     // surrogates: the first and the last
        "\xED\xBF\xBF",     //
        "\xED\xB2\x80",     // what an escape would look like if it were encoded
        "\xF4\x90\x80\x80", // above U+10FFFF
        "\xF5\x80\x80\x80", //
        "\xFE",             // bytes that UTF-8 never uses
        "\xFF",             //
        "\xC3",             // truncated forms
        "\xE2\x82",         //
        "\xF0\x9F\x98",     //
    };
    for (const std::string& bytes : invalid) {
        EXPECT_EQ(DecodeName(bytes), Escaped(bytes)) << testing::PrintToString(bytes);
        EXPECT_EQ(EncodeName(Escaped(bytes)), bytes) << testing::PrintToString(bytes);
    }
}

TEST(TextPosix, ValidCharactersBetweenInvalidBytesAreKept) {
    EXPECT_EQ(DecodeName("\xC3"
                         "a\xE2\x82\xC3\xA4\xFF"),
              L"\xDCC3"
              L"a\xDCE2\xDC82\x00E4\xDCFF");
}

TEST(TextPosix, RandomBytesSurviveTheRoundTrip) {
    constexpr unsigned seed = 20260801;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    for (int round = 0; round < 50000; ++round) {
        std::string bytes(random() % 24, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random() % 4 == 0 ? random() : 0x80 | random());
        ASSERT_EQ(EncodeName(DecodeName(bytes)), bytes) << testing::PrintToString(bytes);
    }
}

TEST(TextPosix, ACharacterThatNoNameDecodesToIsEncodedAsAQuestionMark) {
    for (const unsigned c : {0xD800u, 0xDBFFu, 0xDC00u, 0xDC7Fu, 0xDD00u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu})
        EXPECT_EQ(EncodeName(std::wstring(1, static_cast<wchar_t>(c))), "?") << std::hex << c;
}

TEST(TextPosix, APathIsEncodedLikeAName) {
    const platform::NativePath path(L"d\x00E4\x20AC\x1F600\xDCFF/x");
    EXPECT_STREQ(path, "d\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\xFF/x");
}

TEST(TextPosix, APathTooLongForTheSystemNamesNothing) {
    const std::wstring text(PATH_MAX, L'x');
    EXPECT_STREQ(platform::NativePath(text.c_str()), "");
}

} // namespace
