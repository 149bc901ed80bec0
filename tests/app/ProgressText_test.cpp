// SPDX-License-Identifier: MIT
#include "app/ProgressText.h"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace {

constexpr std::size_t capacity = 256;

std::wstring TextOf(const ProgressState& state, std::size_t columns = 200) {
    wchar_t text[capacity];
    ProgressText(state, columns, text, capacity);
    return text;
}

ProgressState Iso() {
    return {.path = L"/srv/big.iso",
            .function = L"SHA2-256",
            .number = 2,
            .functionCount = 3,
            .size = 4LL << 30,
            .done = 1LL << 30,
            .speed = 512LL << 20};
}

TEST(ProgressText, HasFileFunctionBytesSpeedAndTimeLeft) {
    // 3 GiB of this function and 4 GiB of the next one at half a GiB a second.
    EXPECT_EQ(TextOf(Iso()), L"/srv/big.iso  SHA2-256 2/3  1.0 GiB of 4.0 GiB  512.0 MiB/s  0:14 left");
}

TEST(ProgressText, LeavesOutWhatIsNotKnown) {
    ProgressState state = Iso();
    state.speed = 0;
    EXPECT_EQ(TextOf(state), L"/srv/big.iso  SHA2-256 2/3  1.0 GiB of 4.0 GiB");
    state.size = 0;
    EXPECT_EQ(TextOf(state), L"/srv/big.iso  SHA2-256 2/3  1.0 GiB");
    state.speed = 1;
    EXPECT_EQ(TextOf(state), L"/srv/big.iso  SHA2-256 2/3  1.0 GiB  1 B/s");
}

TEST(ProgressText, WritesBytesInTheLargestUnitAndCutsTenths) {
    ProgressState state = Iso();
    state.size = state.speed = 0;
    const std::pair<std::int64_t, const wchar_t*> cases[] = {
        {0, L"0 B"},
        {1023, L"1023 B"},
        {1024, L"1.0 KiB"},
        {1535, L"1.4 KiB"},
        {1536, L"1.5 KiB"},
        {(1 << 20) - 1, L"1023.9 KiB"},
        {1 << 20, L"1.0 MiB"},
        {1LL << 40, L"1.0 TiB"},
        {1LL << 50, L"1.0 PiB"},
        {INT64_MAX, L"7.9 EiB"},
    };
    for (const auto& [bytes, text] : cases) {
        state.done = bytes;
        EXPECT_EQ(TextOf(state), std::wstring(L"/srv/big.iso  SHA2-256 2/3  ") + text);
    }
}

TEST(ProgressText, WritesHoursOnlyWhereThereAreSome) {
    ProgressState state = Iso();
    state.number = state.functionCount;
    state.done = 0;
    state.speed = 1;
    const std::pair<std::int64_t, const wchar_t*> cases[] = {
        {1, L"0:01 left"},     {59, L"0:59 left"},      {60, L"1:00 left"},      {61, L"1:01 left"},
        {3599, L"59:59 left"}, {3600, L"1:00:00 left"}, {3661, L"1:01:01 left"}, {360000, L"100:00:00 left"}};
    for (const auto& [seconds, text] : cases) {
        state.size = seconds;
        EXPECT_TRUE(TextOf(state).ends_with(text)) << seconds;
    }
}

TEST(ProgressText, AFileThatGrewHasNoTimeLeft) {
    ProgressState state = Iso();
    state.number = state.functionCount;
    state.done = state.size + 1;
    EXPECT_TRUE(TextOf(state).ends_with(L"  0:00 left"));
}

TEST(ProgressText, TakesFewerColumnsThanThereAre) {
    ProgressState state = Iso();
    const std::wstring path(300, L'x');
    state.path = path.c_str();
    for (std::size_t columns = 0; columns < 400; ++columns) {
        const std::wstring text = TextOf(state, columns);
        EXPECT_LT(text.size(), std::max<std::size_t>(columns, 1));
        EXPECT_LT(text.size(), capacity);
    }
    EXPECT_EQ(TextOf(state, 80).size(), 79);
}

TEST(ProgressText, KeepsTheEndOfALongPath) {
    ProgressState state = Iso();
    state.size = state.speed = 0;
    state.path = L"/a/very/long/path/to/picture.jpg";
    EXPECT_EQ(TextOf(state, 40), L"...o/picture.jpg  SHA2-256 2/3  1.0 GiB");
}

TEST(ProgressText, CountsTwoColumnsForCharactersThatMayBeWide) {
    ProgressState state = Iso();
    state.size = state.speed = 0;
    const std::wstring path(50, L'\u6f22');
    state.path = path.c_str();
    const std::wstring text = TextOf(state, 60);
    const std::wstring figures = L"  SHA2-256 2/3  1.0 GiB";
    EXPECT_EQ(text, L"..." + std::wstring((59 - figures.size() - 3) / 2, L'\u6f22') + figures);
}

TEST(ProgressText, SendsNothingToTheTerminalButCharacters) {
    ProgressState state = Iso();
    state.size = state.speed = 0;
    const wchar_t path[] = {L'a', 0x1B, L'[', L'\n', 0x7F, 0x9B, static_cast<wchar_t>(0xDC80), L'b', 0};
    state.path = path;
    EXPECT_EQ(TextOf(state), L"a?[????b  SHA2-256 2/3  1.0 GiB");
}

TEST(ProgressText, KnowsWhereControlCharactersAndHalvesBeginAndEnd) {
    ProgressState state = Iso();
    for (const wchar_t shown : {L'\x20', L'\x7E', L'\xA0', L'\xD7FF', L'\xE000'}) {
        const wchar_t path[] = {shown, 0};
        state.path = path;
        EXPECT_EQ(TextOf(state)[0], shown);
    }
    for (const wchar_t hidden :
         {L'\x01', L'\x1F', L'\x7F', L'\x9F', L'\xD800', L'\xDBFF', L'\xDC00', L'\xDFFF'}) {
        const wchar_t path[] = {hidden, 0};
        state.path = path;
        EXPECT_EQ(TextOf(state)[0], L'?') << static_cast<int>(hidden);
    }
}

TEST(ProgressText, SendsNoCharacterThatTurnsTheDirectionOrBeginsALine) {
    ProgressState state = Iso();
    const auto first = [&](wchar_t character) {
        const wchar_t path[] = {character, 0};
        state.path = path;
        return TextOf(state)[0];
    };
    for (const wchar_t hidden : {L'\x061C', L'\x200E', L'\x200F', L'\x2028', L'\x2029', L'\x202A', L'\x202B',
                                 L'\x202C', L'\x202D', L'\x202E', L'\x2066', L'\x2067', L'\x2068', L'\x2069'})
        EXPECT_EQ(first(hidden), L'?') << std::hex << static_cast<int>(hidden);
    for (const wchar_t shown :
         {L'\x061B', L'\x061D', L'\x200D', L'\x2010', L'\x2027', L'\x202F', L'\x2065', L'\x206A'})
        EXPECT_EQ(first(shown), shown) << std::hex << static_cast<int>(shown);
}

TEST(ProgressText, IsEmptyWhereThereIsNoRoom) {
    EXPECT_EQ(TextOf(Iso(), 0), L"");
    EXPECT_EQ(TextOf(Iso(), 30), L"");
}

} // namespace
