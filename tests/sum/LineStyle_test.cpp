// SPDX-License-Identifier: MIT
#include "sum/LineStyle.h"

#include <gtest/gtest.h>

namespace sum {
namespace {

FunctionChoice Choice(const char* name) {
    return ChoiceOf(fyrn::Function::Named(name));
}

// A line of another file in the style of this one, or "none". The digest of the other file has the
// bytes 0x0a, 0x1b and so on.
std::string Like(const std::string& text, const char* function, const Name& name, const Name& other,
                 const std::string& digest, const std::string& tag = "", bool decimal = false) {
    ListLine line;
    line.name = name;
    line.digests = {{tag, digest, decimal}};
    if (decimal)
        line.size = 6;
    const std::vector<FunctionChoice> functions = {Choice(function)};
    const std::vector<std::string> noColumns;
    const auto style = LineStyle::Of({text, line, functions, noColumns});
    std::vector<std::byte> bytes(functions[0].digestSize);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(0x0a + 0x11 * i);
    const std::vector<std::span<const std::byte>> digests = {bytes};
    return style ? style->Line(other, 7, digests) : "none";
}

TEST(LineStyles, KeepWhatStandsAroundNameAndDigest) {
    EXPECT_EQ(Like("00aa00bb  f", "CRC-32", "f", "g", "00aa00bb"), "0a1b2c3d  g");
    EXPECT_EQ(Like("00AA00BB *f", "CRC-32", "f", "g", "00AA00BB"), "0A1B2C3D *g");
    EXPECT_EQ(Like("00aa00bb f", "CRC-32", "f", "g", "00aa00bb"), "0a1b2c3d g");
    EXPECT_EQ(Like("CRC32 (f) = 00aa00bb", "CRC-32", "f", "g", "00aa00bb", "CRC32"), "CRC32 (g) = 0a1b2c3d");
    EXPECT_EQ(Like("crc-32(f)= 00aa00bb", "CRC-32", "f", "g", "00aa00bb", "crc-32"), "crc-32(g)= 0a1b2c3d");
    EXPECT_EQ(Like("f 00112233", "CRC-32", "f", "g", "00112233"), "g 0A1B2C3D");
    EXPECT_EQ(Like("f    00aa00bb", "CRC-32", "f", "g", "00aa00bb"), "g    0a1b2c3d");
    EXPECT_EQ(Like("crc32:00aa00bb  f", "CRC-32", "f", "g", "00aa00bb", "crc32"), "crc32:0a1b2c3d  g");
    EXPECT_EQ(Like("AKoAuw==  f", "CRC-32", "f", "g", "AKoAuw=="), "ChssPQ==  g");
}

TEST(LineStyles, EscapeNamesWhereTheListDoes) {
    EXPECT_EQ(Like("00aa00bb  f", "CRC-32", "f", "a\nb", "00aa00bb"), "\\0a1b2c3d  a\\nb");
    EXPECT_EQ(Like("\\00aa00bb  a\\\\b", "CRC-32", "a\\b", "g", "00aa00bb"), "0a1b2c3d  g");
    EXPECT_EQ(Like("f 00aa00bb", "CRC-32", "f", "a\\b", "00aa00bb"), "a\\b 0a1b2c3d");
}

TEST(LineStyles, KnowTheOldestChecksums) {
    EXPECT_EQ(Like("12 6 f", "crc", "f", "g", "12", "", true), "169552957 7 g");
}

TEST(LineStyles, AreNotMadeUp) {
    EXPECT_EQ(Like("00aa00bb  f # why", "CRC-32", "f", "g", "00aa00bb"), "none");
    EXPECT_EQ(Like("6 00aa00bb  other", "CRC-32", "f", "g", "00aa00bb"), "none");
}

TEST(LineStyles, AreThatOfATableWithItsColumns) {
    const std::vector<std::string> columns = {"size", "crc32", "filename"};
    const std::vector<FunctionChoice> functions = {Choice("CRC-32")};
    ListLine line;
    line.name = "f";
    line.size = 6;
    line.digests = {{"crc32", "00aa00bb"}};
    const auto style = LineStyle::Of({"6,00aa00bb,f", line, functions, columns});
    ASSERT_TRUE(style);
    const std::vector<std::byte> bytes(4, std::byte{0x11});
    const std::vector<std::span<const std::byte>> digests = {bytes};
    EXPECT_EQ(style->Line("g", 12, digests), "12,11111111,g");
    line.digests.push_back({"unknown", "00"}); // was taken off: a column that cannot be filled
    line.digests.clear();
    EXPECT_FALSE(LineStyle::Of({"6,00aa00bb,f", line, functions, columns}));
}

} // namespace
} // namespace sum
