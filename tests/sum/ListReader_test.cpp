// SPDX-License-Identifier: MIT
#include "sum/ListReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace std::string_literals;

namespace {

// Hands a text out in pieces of at most `piece` bytes.
sum::ListReader::Source From(std::string text, std::size_t piece) {
    return [text = std::move(text), piece, taken = std::size_t{0}](std::span<char> space) mutable {
        const std::size_t count = std::min({piece, space.size(), text.size() - taken});
        std::copy_n(text.begin() + static_cast<std::ptrdiff_t>(taken), count, space.begin());
        taken += count;
        return count;
    };
}

// The records in brackets, broken ones as "!", and a 0 at the end where NUL ends them.
std::string Records(const std::string& text, std::size_t piece) {
    sum::ListReader reader(From(text, piece));
    std::string records;
    sum::ListRecord record;
    std::uint64_t number = 0;
    while (reader.Next(record)) {
        EXPECT_EQ(record.number, ++number);
        records += record.broken ? "!"s : "[" + std::string(record.text) + "]";
    }
    return records + (reader.EndsInNul() ? "0" : "");
}

std::string Utf16(const std::u16string& text, bool bigEndian) {
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes += bigEndian ? high : low;
        bytes += bigEndian ? low : high;
    }
    return bytes;
}

class ListReader : public testing::TestWithParam<std::size_t> {
  protected:
    static std::string Read(const std::string& text) { return Records(text, GetParam()); }
};

TEST_P(ListReader, SplitsAtLineEndsOfEitherKind) {
    EXPECT_EQ(Read("a\nb\r\n\nc\r\rd\r"), "[a][b][][c\r\rd]");
    EXPECT_EQ(Read(""), "");
    EXPECT_EQ(Read("\n"), "[]");
    EXPECT_EQ(Read("last"), "[last]");
}

TEST_P(ListReader, SplitsAtNulWhereThereIsOne) {
    EXPECT_EQ(Read("a\nb\r\0c\n\0"s), "[a\nb\r][c\n]0");
    EXPECT_EQ(Read("a\nb\0c"s), "[a\nb][c]0");
}

TEST_P(ListReader, TakesOffAByteOrderMark) {
    const std::string mark = "\xef\xbb\xbf";
    EXPECT_EQ(Read(mark + "a\n" + mark + "b\n"), "[a][" + mark + "b]");
    EXPECT_EQ(Read("\xef\xbb"), "[\xef\xbb]");
    EXPECT_EQ(Read(mark), "");
}

TEST_P(ListReader, TurnsUtf16OfEitherOrderIntoUtf8) {
    const std::u16string text = u"\uFEFFa\u00e9\u20ac\U0001F600\r\n\nb";
    for (const bool bigEndian : {false, true})
        EXPECT_EQ(Read(Utf16(text, bigEndian)), "[a\xc3\xa9\xe2\x82\xac\xf0\x9f\x98\x80][][b]");
    EXPECT_EQ(Read(Utf16(u"\uFEFFa\nb\0c"s, false)), "[a\nb][c]0");
    EXPECT_EQ(Read("\xff\xfe"), "");
}

TEST_P(ListReader, TellsOfWhatIsNoUtf16AndGoesOn) {
    const std::u16string halves = {0xFEFF, u'a', 0xD83D, u'\n', 0xDE00, u'b', u'\n', u'c', u'\n'};
    EXPECT_EQ(Read(Utf16(halves, false)), "!![c]");
    EXPECT_EQ(Read(Utf16(u"\uFEFFa\n", false) + "b"), "[a]!"); // cut within a character
    const std::u16string cutPair = {0xFEFF, u'a', u'\n', u'b', 0xD83D};
    EXPECT_EQ(Read(Utf16(cutPair, true)), "[a]!");
}

INSTANTIATE_TEST_SUITE_P(InPieces, ListReader, testing::Values(1, 2, 3, 7, 1 << 20));

TEST(ListReaderLimits, ARecordOfTheLongestLengthIsReadAndALongerOneIsBroken) {
    const std::string longest(sum::ListReader::maxRecord, 'x');
    EXPECT_EQ(Records("a\n" + longest + "\nb\n", 1 << 20), "[a][" + longest + "][b]");
    EXPECT_EQ(Records("a\n" + longest + "x\nb\n", 1 << 20), "[a]![b]");
    EXPECT_EQ(Records(longest + longest + longest + "\nb", 4099), "![b]");
    EXPECT_EQ(Records(longest + "x", 65536), "!");
}

TEST(ListReaderLimits, ANulFarFromTheBeginningIsPartOfItsLine) {
    std::string lines;
    std::string expected;
    while (lines.size() <= 2 * sum::ListReader::maxRecord) {
        lines += "line\n";
        expected += "[line]";
    }
    EXPECT_EQ(Records(lines + "a\0b\n"s, 1 << 20), expected + "[a\0b]"s);
}

// 1 GiB without a line's end: never more than a piece is asked for, and nothing of it is kept.
TEST(ListReaderLimits, AnEndlessLineIsReadInBoundedMemory) {
    std::size_t left = std::size_t{1} << 30;
    std::size_t widest = 0;
    sum::ListReader reader([&](std::span<char> space) {
        const std::size_t count = std::min(space.size(), left);
        widest = std::max(widest, space.size());
        std::fill_n(space.begin(), count, 'x');
        left -= count;
        return count;
    });
    sum::ListRecord record;
    EXPECT_TRUE(reader.Next(record));
    EXPECT_TRUE(record.broken);
    EXPECT_TRUE(record.text.empty());
    EXPECT_FALSE(reader.Next(record));
    EXPECT_EQ(left, 0U);
    EXPECT_LE(widest, sum::ListReader::maxRecord);
}

} // namespace
