// SPDX-License-Identifier: MIT
#include "sum/ListLines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace std::string_literals;

namespace {

const std::string md5 = "0cc175b9c0f1b6a831c399e269772661";
const std::string sha1 = "86f7e437faa5a7fce15d1ddcb9eaeaea377667b8";
const std::string crc16 = "5781";

// Entries as "number:name" with "+" and the tag of each digest that has one, malformed lines as
// "number!".
std::string Lines(const std::string& list, bool gnuOnly = false) {
    std::size_t taken = 0;
    sum::ListReader reader([&](std::span<char> space) {
        const std::size_t count = std::min(space.size(), list.size() - taken);
        std::copy_n(list.begin() + static_cast<std::ptrdiff_t>(taken), count, space.begin());
        taken += count;
        return count;
    });
    sum::LineRules rules;
    rules.sizes.each.set(16);
    rules.gnuOnly = gnuOnly;
    sum::ListLines lines(reader, rules);
    std::string told;
    sum::ListLine line;
    for (sum::LineKind kind = lines.Next(line); kind != sum::LineKind::end; kind = lines.Next(line)) {
        told += (told.empty() ? "" : " ") + std::to_string(line.number);
        if (kind == sum::LineKind::malformed)
            told += "!";
        else if (kind == sum::LineKind::lone)
            told += " alone";
        else
            told += ":" + line.name;
        for (const sum::ListDigest& digest : line.digests)
            if (kind == sum::LineKind::entry && !digest.tag.empty())
                told += "+" + digest.tag;
    }
    return told;
}

TEST(ListLines, BlankLinesAndCommentsAreNoLines) {
    EXPECT_EQ(Lines("# c\n\n; c\n  \t\n" + md5 + "  a\nx\n" + md5 + "  b"), "5:a 6! 7:b");
    EXPECT_EQ(Lines(""), "");
    EXPECT_EQ(Lines("#" + md5 + "  a\n\n"), "");
}

TEST(ListLines, GnuToolsKnowFewerCommentsAndNoOtherList) {
    EXPECT_EQ(Lines("# c\n; c\n \n\n" + md5 + "  a\n", true), "2! 3! 5:a");
    EXPECT_EQ(Lines("Hashes: MD5 \n\na\n  " + md5 + "\n", true), "1! 3! 4!");
}

TEST(ListLines, ADigestAloneIsToldWhenNothingElseIsThere) {
    EXPECT_EQ(Lines(md5), "1 alone");
    EXPECT_EQ(Lines("\n# c\n" + md5 + "\n\n"), "3 alone");
    EXPECT_EQ(Lines(md5 + "\n" + md5 + "\n"), "1! 2!");
    EXPECT_EQ(Lines(md5 + "\n" + md5 + "  a\nx\n"), "1! 2:a 3!");
    EXPECT_EQ(Lines(md5 + "  a\n" + md5 + "\n"), "1:a 2!");
}

TEST(ListLines, ArmourAroundSignedText) {
    const std::string head = "-----BEGIN PGP SIGNED MESSAGE-----\nHash: SHA256\n\n";
    const std::string tail = "-----BEGIN PGP SIGNATURE-----\nVersion: 2\n\niQEzBAEBCAAdFiEE\n=Ab12\n"
                             "-----END PGP SIGNATURE-----\n";
    EXPECT_EQ(Lines(head + md5 + "  a\n- " + md5 + "  -b\n" + tail + md5 + "  c\n"), "4:a 5:-b 12:c");
    // A signature without an end hides no line.
    EXPECT_EQ(Lines(head + "-----BEGIN PGP SIGNATURE-----\niQEz\n" + md5 + "  a\n"), "6:a");
    EXPECT_EQ(Lines("- " + md5 + "  a\n"), "1!");
}

TEST(ListLines, TheTableOfHashdeep) {
    const std::string head = "%%%% HASHDEEP-1.0\n%%%% size,md5,sha1,filename\n## Invoked from: /\n## \n";
    EXPECT_EQ(Lines(head + "1," + md5 + "," + sha1 + ",/a,b\n1," + md5 + ",a\n"), "5:/a,b+md5+sha1 6!");
}

TEST(ListLines, TheReportOfFyrn) {
    const std::string head = "Hashes: CRC-16 MD5 \n\n";
    const std::string digests = "  " + crc16 + "\n  " + md5 + "\n";
    EXPECT_EQ(Lines(head + "a b\n" + digests + "#c\n" + digests), "3:a b+CRC-16+MD5 6:#c+CRC-16+MD5");
    EXPECT_EQ(Lines(head + "a\n" + digests + "b"), "3:a+CRC-16+MD5 6!");
    EXPECT_EQ(Lines("Hashes: NONE \n\na\n" + digests), "1! 3! 4! 5!");
}

TEST(ListLines, AReportWithLinesMissingLosesNone) {
    const std::string head = "Hashes: CRC-16 MD5 \n\n";
    EXPECT_EQ(Lines(head + "a\n  " + md5 + "\nb\n  " + crc16 + "\n"), "3:a+MD5 5:b+CRC-16");
    EXPECT_EQ(Lines(head + "a\nb\n  " + crc16 + "\n  \n  " + md5 + "\n"), "3! 4:b+CRC-16+MD5");
    EXPECT_EQ(Lines(head + "a\n  578\n  " + md5 + "\n"), "4! 3:a+MD5");
    // Without names.
    EXPECT_EQ(Lines(head + "  " + crc16 + "\n  " + md5 + "\n"), "3! 4!");
}

TEST(ListLines, RecordsThatEndWithNul) {
    EXPECT_EQ(Lines(md5 + "  a\nb\0"s + md5 + "  c\\n\0"s), "1:a\nb 2:c\\n");
    EXPECT_EQ(Lines(md5 + "  a\0"s), "1:a");
}

TEST(ListLines, UnreadableRecordsAreMalformed) {
    EXPECT_EQ(Lines(std::string(sum::ListReader::maxRecord + 1, 'x') + "\n" + md5 + "  a\n"), "1! 2:a");
}

} // namespace
