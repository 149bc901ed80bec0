// SPDX-License-Identifier: MIT
#include "sum/Glob.h"

#include <gtest/gtest.h>
#include <string>

namespace sum {
namespace {

TEST(Glob, MatchesAllOfTheText) {
    EXPECT_TRUE(MatchesGlob("name", "name"));
    EXPECT_FALSE(MatchesGlob("name", "names"));
    EXPECT_FALSE(MatchesGlob("name", "nam"));
    EXPECT_TRUE(MatchesGlob("", ""));
    EXPECT_FALSE(MatchesGlob("", "x"));
}

TEST(Glob, StarsStandForAnythingSlashesAndDotsIncluded) {
    EXPECT_TRUE(MatchesGlob("*", ""));
    EXPECT_TRUE(MatchesGlob("*.o", ".hidden/main.o"));
    EXPECT_TRUE(MatchesGlob("a*b*c", "abbbac"));
    EXPECT_FALSE(MatchesGlob("a*b*c", "abbbad"));
    EXPECT_TRUE(MatchesGlob("**", "x"));
}

TEST(Glob, QuestionMarksStandForOneCharacterOfAnyLength) {
    EXPECT_TRUE(MatchesGlob("?", "\xc3\xa4"));
    EXPECT_FALSE(MatchesGlob("??", "\xc3\xa4"));
    EXPECT_TRUE(MatchesGlob("?", "\xff"));
    EXPECT_FALSE(MatchesGlob("?", ""));
}

TEST(Glob, SetsNameCharactersAndRanges) {
    EXPECT_TRUE(MatchesGlob("[abc]", "b"));
    EXPECT_FALSE(MatchesGlob("[!abc]", "b"));
    EXPECT_TRUE(MatchesGlob("[^a-c]", "d"));
    EXPECT_TRUE(MatchesGlob("[0-9a]", "7"));
    EXPECT_TRUE(MatchesGlob("[]]", "]"));
    EXPECT_TRUE(MatchesGlob("[a-]", "-"));
    EXPECT_TRUE(MatchesGlob("[\xc3\xa4-\xc3\xbc]", "\xc3\xb6"));
    EXPECT_TRUE(MatchesGlob("[\\]x]", "]"));
}

TEST(Glob, WhatIsNeverClosedStandsForItself) {
    EXPECT_TRUE(MatchesGlob("[ab", "[ab"));
    EXPECT_FALSE(MatchesGlob("[ab", "a"));
    EXPECT_TRUE(MatchesGlob("a\\", "a\\"));
}

TEST(Glob, BackslashesTakeTheMeaningAway) {
    EXPECT_TRUE(MatchesGlob("\\*", "*"));
    EXPECT_FALSE(MatchesGlob("\\*", "x"));
    EXPECT_TRUE(MatchesGlob("\\[a]", "[a]"));
}

// One that tried all ways to share the text between the stars would not end.
TEST(Glob, ManyStarsTakeNoTime) {
    std::string glob;
    for (int i = 0; i < 200; ++i)
        glob += "*a";
    EXPECT_FALSE(MatchesGlob(glob + "b", std::string(4000, 'a')));
}

} // namespace
} // namespace sum
