// SPDX-License-Identifier: MIT
#include "sum/Functions.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace sum {
namespace {

std::string TagFor(std::string_view tag, std::size_t bytes) {
    const auto choice = ChoiceOfTag(tag, bytes);
    return choice ? choice->tag : "none";
}

TEST(Functions, TagsMeanTheFunctionOfTheirLength) {
    EXPECT_EQ(TagFor("SHA256", 32), "SHA256");
    EXPECT_EQ(TagFor("SHA2-256", 32), "SHA256");
    EXPECT_EQ(TagFor("SHA256", 20), "none");
    EXPECT_EQ(TagFor("SHA512/256", 32), "SHA512/256");
    EXPECT_EQ(TagFor("NOSUCH", 32), "none");
    EXPECT_EQ(TagFor("", 32), "none");
}

TEST(Functions, TagsMayNameTheLength) {
    EXPECT_EQ(TagFor("BLAKE2b", 64), "BLAKE2b");
    EXPECT_EQ(TagFor("BLAKE2b", 32), "none");
    EXPECT_EQ(TagFor("BLAKE2b-256", 32), "BLAKE2b-256");
    EXPECT_EQ(TagFor("BLAKE2b-200", 25), "BLAKE2b-200");
    EXPECT_EQ(TagFor("BLAKE2b-200", 26), "none");
    EXPECT_EQ(TagFor("BLAKE2b-0", 0), "none");
    EXPECT_EQ(TagFor("BLAKE2b-99999999999999999999999", 64), "none");
    EXPECT_EQ(TagFor("BLAKE2b-520", 65), "none");
    EXPECT_EQ(TagFor("MD5-64", 8), "none");
}

TEST(Functions, ShakeHasTheLengthOfTheDigest) {
    EXPECT_EQ(TagFor("SHAKE128", 16), "SHAKE128");
    EXPECT_EQ(TagFor("SHAKE128", 32), "SHAKE128-256");
    EXPECT_EQ(TagFor("SHAKE256-8", 1), "SHAKE256-8");
    EXPECT_EQ(TagFor("SHAKE128", 0), "none");
}

TEST(Functions, OneLengthIsOneChoice) {
    const auto blake2b = fyrn::Function::Named("blake2b");
    EXPECT_EQ(*ChoiceOf(blake2b, 256), ChoiceOf(fyrn::Function::Named("BLAKE2-256")));
    EXPECT_EQ(*ChoiceOf(blake2b, 512), ChoiceOf(blake2b));
    EXPECT_FALSE(ChoiceOf(blake2b, 7));
    EXPECT_FALSE(ChoiceOf(blake2b, 0));
    EXPECT_FALSE(ChoiceOf(fyrn::Function::Named("md5"), 64));
}

TEST(Functions, OfOneLengthBeginWithTheUsualOne) {
    for (const auto& [bytes, tag] : {std::pair(4, "CRC32"),
                                     {16, "MD5"},
                                     {20, "SHA1"},
                                     {28, "SHA224"},
                                     {32, "SHA256"},
                                     {48, "SHA384"},
                                     {64, "SHA512"}}) {
        const auto choices = ChoicesOfSize(static_cast<std::size_t>(bytes));
        ASSERT_FALSE(choices.empty());
        EXPECT_EQ(choices[0].tag, tag);
        for (std::size_t i = 0; i < choices.size(); ++i) {
            EXPECT_EQ(choices[i].digestSize, static_cast<std::size_t>(bytes));
            EXPECT_EQ(choices[i].legacy, Legacy::none);
            EXPECT_EQ(std::count(choices.begin(), choices.end(), choices[i]), 1) << choices[i].tag;
        }
    }
    EXPECT_EQ(ChoicesOfSize(25)[0].tag, "BLAKE2b-200");
    EXPECT_TRUE(ChoicesOfSize(0).empty());
}

// They are the keys of JSON and parts of file names.
TEST(Functions, PlainNamesDifferAndAreFoundAgain) {
    std::vector<std::string> names;
    for (const fyrn::Function function : fyrn::Function::All()) {
        const std::string name = ChoiceOf(function).name;
        EXPECT_EQ(name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"), std::string::npos) << name;
        EXPECT_TRUE(fyrn::Function::Find(name) == function) << name;
        EXPECT_EQ(std::count(names.begin(), names.end(), name), 0) << name;
        names.push_back(name);
    }
}

} // namespace
} // namespace sum
