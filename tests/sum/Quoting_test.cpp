// SPDX-License-Identifier: MIT
#include "sum/Messages.h"

#include <gtest/gtest.h>

namespace sum {
namespace {

// As GNU's tools write them in their messages.
TEST(Quoting, OrdinaryNamesStayAsTheyAre) {
    EXPECT_EQ(Quoted("file-1.0_a+b@c,d%e/f"), "file-1.0_a+b@c,d%e/f");
    EXPECT_EQ(Quoted("a~b#c"), "a~b#c");
    EXPECT_EQ(Quoted("\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80"), "\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80");
}

TEST(Quoting, WhatAShellWouldTakeApartIsQuoted) {
    for (const char c : std::string(" !\"$&()*;<=>?[\\^`|:"))
        EXPECT_EQ(Quoted(std::string("a") + c), std::string("'a") + c + "'");
    EXPECT_EQ(Quoted("~a"), "'~a'");
    EXPECT_EQ(Quoted("#a"), "'#a'");
    EXPECT_EQ(Quoted("{"), "'{'");
    EXPECT_EQ(Quoted(""), "''");
}

TEST(Quoting, SingleQuotesStandInDoubleOnesOrAreEscaped) {
    EXPECT_EQ(Quoted("it's"), "\"it's\"");
    EXPECT_EQ(Quoted("it's $5"), "'it'\\''s $5'");
}

TEST(Quoting, NoControlCharacterGetsThrough) {
    EXPECT_EQ(Quoted("a\nb"), "'a'$'\\n''b'");
    EXPECT_EQ(Quoted("\x1b[2J"), "''$'\\033''[2J'");
    EXPECT_EQ(Quoted("a\r"), "'a'$'\\r'");
    EXPECT_EQ(Quoted("\x7f'"), "''$'\\177'\\'''");
    EXPECT_EQ(Quoted("\xc2\x9b"), "''$'\\302\\233'"); // the terminal's escape in one character
}

TEST(Quoting, NeitherDoBytesThatAreNoTextOrMarksThatTurnIt) {
    EXPECT_EQ(Quoted("\xff"), "''$'\\377'");
    EXPECT_EQ(Quoted("\xc3"), "''$'\\303'");
    EXPECT_EQ(Quoted("\xe2\x80\xaetxt"), "''$'\\342\\200\\256''txt'"); // from right to left
    EXPECT_EQ(Quoted("\xed\xa0\x80"), "''$'\\355\\240\\200'");         // half of a pair
}

TEST(Quoting, ArgumentsAreQuotedAsInC) {
    EXPECT_EQ(QuotedPlain("foo"), "'foo'");
    EXPECT_EQ(QuotedPlain("a'b\\\n"), "'a\\'b\\\\\\n'");
}

} // namespace
} // namespace sum
