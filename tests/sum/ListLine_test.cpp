// SPDX-License-Identifier: MIT
#include "sum/ListLine.h"

#include <gtest/gtest.h>

#include <string>

using namespace std::string_literals;

namespace {

const std::string md5 = "0cc175b9c0f1b6a831c399e269772661";
const std::string sha256 = "ca978112ca1bbdcafac231b39a23dc4da786eff8147c4e72b9807785afee48bb";
const std::string sha256Base64 = "ypeBEsobvcr6wjGzmiPcTaeG7/gUfE5yuYB3ha/uSLs=";
const std::string sha384Base64 = "VKWbnyKwuAiA2EJ+VIt8I6vYc0huHwNdzpzWl+hRdQM8qojm1XvDXvrgta/TFF8x";

sum::LineRules Rules() {
    sum::LineRules rules;
    for (const std::size_t bytes : {4, 8, 16, 20, 28, 32, 48, 64})
        rules.sizes.each.set(bytes);
    return rules;
}

// "tag:digest|name", with "#" before a decimal digest and "|size*unit" where the line has a size.
std::string Told(sum::LineKind kind, const sum::ListLine& line) {
    if (kind == sum::LineKind::malformed)
        return "malformed";
    std::string told;
    for (const sum::ListDigest& digest : line.digests)
        told += (told.empty() ? "" : ",") + digest.tag + (digest.decimal ? "#" : ":") + digest.text;
    if (kind == sum::LineKind::lone)
        return told + " alone";
    told += "|" + line.name;
    if (line.size)
        told += "|" + std::to_string(*line.size);
    if (line.sizeUnit != 1)
        told += "*" + std::to_string(line.sizeUnit);
    return told;
}

std::string Parsed(std::string_view text, const sum::LineRules& rules = Rules()) {
    sum::LineParser parser(rules);
    sum::ListLine line;
    return Told(parser.Parse(text, line), line);
}

TEST(ListLine, TaggedLinesOfManyTools) {
    for (const std::string text :
         {"SHA256 (a b) = ", "SHA256(a b)= ", "SHA256   (a b) = ", " SHA256 (a b)\t=\t"})
        EXPECT_EQ(Parsed(text + sha256), "SHA256:" + sha256 + "|a b") << text;
    EXPECT_EQ(Parsed("SHA2-512/256(a)= " + sha256), "SHA2-512/256:" + sha256 + "|a");
    EXPECT_EQ(Parsed("SHA256 (a) = " + sha256Base64), "SHA256:" + sha256Base64 + "|a");
    EXPECT_EQ(Parsed("BLAKE3 (a) = " + sha256), "BLAKE3:" + sha256 + "|a");
    EXPECT_EQ(Parsed("SHAKE128 (a) = 1234"), "SHAKE128:1234|a");
    EXPECT_EQ(Parsed("SIZE (a) = 12"), "|a|12");
    EXPECT_EQ(Parsed("Size (a) = 12 bytes"), "|a|12");
}

TEST(ListLine, TheLastParenthesisEndsTheNameOfATaggedLine) {
    EXPECT_EQ(Parsed("MD5 (x) = " + md5 + ") = " + md5), "MD5:" + md5 + "|x) = " + md5);
    EXPECT_EQ(Parsed("MD5 (a (1)) = " + md5), "MD5:" + md5 + "|a (1)");
    EXPECT_EQ(Parsed("MD5 () = " + md5), "MD5:" + md5 + "|");
}

TEST(ListLine, ATaggedLineCutAnywhereIsMalformed) {
    const std::string head = "SHA256 (name) = ";
    for (std::size_t length = 1; length <= head.size(); ++length)
        EXPECT_EQ(Parsed(head.substr(0, length)), "malformed") << length;
    for (const std::string_view text : {"()", "(", "( =", ") = 00", " (a) = 00000000", "SHA256 (a) = g000000",
                                        "SHA256 (a) = 0", "SHA256 (a) = 0000 ", "SIZE (a) = x", "SIZE (a) ="})
        EXPECT_EQ(Parsed(text), "malformed") << text;
}

TEST(ListLine, AnEscapedNameIsRestored) {
    EXPECT_EQ(Parsed("\\MD5 (a\\nb\\\\c\\r) = " + md5), "MD5:" + md5 + "|a\nb\\c\r");
    EXPECT_EQ(Parsed("\\" + md5 + "  a\\nb"), ":" + md5 + "|a\nb");
    EXPECT_EQ(Parsed(md5 + "  a\\nb"), ":" + md5 + "|a\\nb");
    EXPECT_EQ(Parsed("\\" + md5 + "  a\\tb"), "malformed");
    EXPECT_EQ(Parsed("\\" + md5 + "  a\\"), "malformed");
    sum::LineRules rules = Rules();
    rules.endsInNul = true;
    EXPECT_EQ(Parsed("\\" + md5 + "  a\\nb", rules), "malformed");
    EXPECT_EQ(Parsed(md5 + "  a\nb", rules), ":" + md5 + "|a\nb");
}

TEST(ListLine, DigestThenName) {
    EXPECT_EQ(Parsed(md5 + "  a b"), ":" + md5 + "|a b");
    EXPECT_EQ(Parsed(md5 + " *a"), ":" + md5 + "|a");
    EXPECT_EQ(Parsed(md5 + "   a"), ":" + md5 + "| a");
    EXPECT_EQ(Parsed(md5 + " a"), ":" + md5 + "|a");
    EXPECT_EQ(Parsed(md5 + "\ta"), ":" + md5 + "|a");
    EXPECT_EQ(Parsed("  " + md5 + "  a"), ":" + md5 + "|a");
    EXPECT_EQ(Parsed(sha256Base64 + "  a"), ":" + sha256Base64 + "|a");
    EXPECT_EQ(Parsed(sha384Base64 + "  a"), ":" + sha384Base64 + "|a");
    EXPECT_EQ(Parsed("XXH3_e6c632b61e964e1f  a"), "XXH3:e6c632b61e964e1f|a");
    EXPECT_EQ(Parsed("sha256:" + sha256 + "  a"), "sha256:" + sha256 + "|a");
}

TEST(ListLine, DigestsOfOtherLengthsAreMalformed) {
    EXPECT_EQ(Parsed(sha256.substr(1) + "  a"), "malformed");
    EXPECT_EQ(Parsed(sha256.substr(2) + "  a"), "malformed");
    EXPECT_EQ(Parsed(sha256 + "0  a"), "malformed");
    EXPECT_EQ(Parsed(sha256Base64.substr(1) + "  a"), "malformed");
    EXPECT_EQ(Parsed(sha256Base64.substr(4) + "  a"), "malformed");
    EXPECT_EQ(Parsed(md5.substr(1) + "g  a"), "malformed");
    EXPECT_EQ(Parsed("no line of a list"), "malformed");
}

TEST(ListLine, TheFirstLineDecidesHowManyBlanksThereAre) {
    sum::ListLine line;
    sum::LineParser one(Rules());
    EXPECT_EQ(Told(one.Parse(md5 + " a", line), line), ":" + md5 + "|a");
    EXPECT_EQ(Told(one.Parse(md5 + "  a", line), line), ":" + md5 + "| a");
    EXPECT_EQ(Told(one.Parse(md5 + " *a", line), line), ":" + md5 + "|*a");
    sum::LineParser two(Rules());
    EXPECT_EQ(Told(two.Parse(md5 + " *a", line), line), ":" + md5 + "|a");
    EXPECT_EQ(Told(two.Parse(md5 + " a", line), line), "malformed");
}

TEST(ListLine, SizesBesideDigests) {
    EXPECT_EQ(Parsed("         6  " + md5 + "  a"), ":" + md5 + "|a|6");
    EXPECT_EQ(Parsed("  12345678  " + md5 + "  a"), ":" + md5 + "|a|12345678");
    EXPECT_EQ(Parsed("1234567890123  " + md5 + "  a"), ":" + md5 + "|a|1234567890123");
    EXPECT_EQ(Parsed("12345678  " + md5 + "  a"), ":12345678|" + md5 + "  a"); // of a CRC-32
    EXPECT_EQ(Parsed("99999999999999999999  " + md5 + "  a"), "malformed");
}

TEST(ListLine, NumbersOfTheOldestTools) {
    EXPECT_EQ(Parsed("1220704766 1 a b"), "#1220704766|a b|1");
    EXPECT_EQ(Parsed("12345678 0 a"), "#12345678|a|0");
    sum::LineRules rules = Rules();
    rules.decimals = sum::DecimalLines::bsd;
    EXPECT_EQ(Parsed("00097     1 a", rules), "#00097|a|1*1024");
    EXPECT_EQ(Parsed("00097 12345 a", rules), "#00097|a|12345*1024");
    rules.decimals = sum::DecimalLines::sysv;
    EXPECT_EQ(Parsed("97 1 a", rules), "#97|a|1*512");
    rules.decimals = sum::DecimalLines::none;
    EXPECT_EQ(Parsed("1220704766 1 a", rules), "malformed");
}

TEST(ListLine, NameThenDigest) {
    EXPECT_EQ(Parsed("a b.txt E8B7BE43"), ":E8B7BE43|a b.txt");
    EXPECT_EQ(Parsed("a.txt    e8b7be43"), ":e8b7be43|a.txt");
    EXPECT_EQ(Parsed("a.txt  " + md5), ":" + md5 + "|a.txt");
    EXPECT_EQ(Parsed("a.txt " + md5), "malformed");
    EXPECT_EQ(Parsed(" e8b7be43"), ":e8b7be43 alone");
    // Sixty-four letters are base64 too, but with a digest behind them they are a name.
    const std::string name(64, 'n');
    EXPECT_EQ(Parsed(name + "  " + md5), ":" + md5 + "|" + name);
}

TEST(ListLine, SeveralDigestsInOneLineAreNotRead) {
    EXPECT_EQ(Parsed("a.txt  e8b7be43  " + md5), "malformed");
}

TEST(ListLine, ADigestAlone) {
    EXPECT_EQ(Parsed(md5), ":" + md5 + " alone");
    EXPECT_EQ(Parsed(md5 + " \t"), ":" + md5 + " alone");
    EXPECT_EQ(Parsed(md5.substr(2)), "malformed");
}

TEST(ListLine, OnlyWhatGnuToolsRead) {
    sum::LineRules rules = Rules();
    rules.gnuOnly = true;
    EXPECT_EQ(Parsed(md5 + "  a", rules), ":" + md5 + "|a");
    EXPECT_EQ(Parsed("MD5(a)= " + md5, rules), "MD5:" + md5 + "|a");
    for (const std::string& text : {"1220704766 1 a"s, "a.txt E8B7BE43"s, md5, "md5:" + md5 + "  a",
                                    "6  " + md5 + "  a", "MD5  (a) = " + md5, "SIZE (a) = 1"s})
        EXPECT_EQ(Parsed(text, rules), "malformed") << text;
    rules.untagged = false;
    EXPECT_EQ(Parsed(md5 + "  a", rules), "malformed");
    EXPECT_EQ(Parsed("MD5 (a) = " + md5, rules), "MD5:" + md5 + "|a");
}

TEST(ListLine, PercentCodesOfBagIt) {
    sum::LineRules rules = Rules();
    rules.percent = true;
    EXPECT_EQ(Parsed(md5 + "  a%0Ab%0dc%25d%20e%2", rules), ":" + md5 + "|a\nb\rc%d%20e%2");
    EXPECT_EQ(Parsed(md5 + "  a%0Ab"), ":" + md5 + "|a%0Ab");
}

TEST(ListLine, ANameWithNulIsMalformed) {
    EXPECT_EQ(Parsed(md5 + "  a\0b"s), "malformed");
    EXPECT_EQ(Parsed("MD5 (a\0b) = "s + md5), "malformed");
}

TEST(ListLine, RowsOfHashdeep) {
    const std::vector<std::string> columns = {"size", "md5", "sha256", "filename"};
    sum::ListLine line;
    EXPECT_TRUE(sum::ParseTableRow("1," + md5 + "," + sha256 + ",./a,b", columns, line));
    EXPECT_EQ(Told(sum::LineKind::entry, line), "md5:" + md5 + ",sha256:" + sha256 + "|./a,b|1");
    for (const std::string& text : {"1," + md5 + "," + sha256, "x," + md5 + "," + sha256 + ",a",
                                    "1,," + sha256 + ",a", "1," + md5 + "," + sha256 + ",", ""s})
        EXPECT_FALSE(sum::ParseTableRow(text, columns, line)) << text;
}

} // namespace
