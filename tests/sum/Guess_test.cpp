// SPDX-License-Identifier: MIT
#include "sum/Guess.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Kind = sum::LineFunctions::Kind;

// What the functions of a line with these digests are.
std::string FunctionsOf(sum::ListFunctions& functions, std::vector<sum::ListDigest> digests) {
    sum::ListLine line;
    line.digests = std::move(digests);
    const sum::LineFunctions found = functions.Of(line);
    if (found.kind == Kind::malformed)
        return "malformed";
    if (found.kind == Kind::unknown)
        return "unknown " + found.unknownTag;
    EXPECT_EQ(found.functions->size(), line.digests.size());
    std::string names;
    for (const sum::FunctionChoice& choice : *found.functions)
        names += (names.empty() ? "" : ",") + choice.tag;
    return found.kind == Kind::guessed ? names + "?" : names;
}

std::string Digits(std::size_t bytes) {
    return std::string(2 * bytes, '0');
}

std::string Untagged(sum::ListFunctions& functions, std::size_t bytes) {
    return FunctionsOf(functions, {{"", Digits(bytes)}});
}

TEST(Guess, TheNameOfAListNamesItsFunction) {
    const std::pair<const char*, const char*> names[] = {{"SHA256SUMS", "sha256"},
                                                         {"dir.md5/SHA512SUMS.txt", "sha512"},
                                                         {"disk.iso.sha512", "sha512"},
                                                         {"manifest-sha512.txt", "sha512"},
                                                         {"sha3-256sum.txt", "sha3-256"},
                                                         {"md5sum.txt", "md5"},
                                                         {"B2SUMS", "b2"},
                                                         {"SHA3SUMS", "sha3"},
                                                         {"md5sums.sha256", "sha256"},
                                                         {"CHECKSUMS", ""},
                                                         {"sums", ""},
                                                         {"disk.iso", ""},
                                                         {"x.blake2b-256.txt", "blake2b-256"}};
    for (const auto& [list, function] : names)
        EXPECT_EQ(sum::FunctionInName(list), function) << list;
}

TEST(Guess, TheLengthTellsTheCommonFunction) {
    sum::ListFunctions functions({}, "list");
    const std::pair<std::size_t, const char*> expected[] = {{4, "CRC32?"},   {16, "MD5?"},    {20, "SHA1?"},
                                                            {28, "SHA224?"}, {32, "SHA256?"}, {48, "SHA384?"},
                                                            {64, "SHA512?"}};
    for (const auto& [bytes, function] : expected)
        EXPECT_EQ(Untagged(functions, bytes), function);
    EXPECT_EQ(Untagged(functions, 31), "malformed");
    EXPECT_EQ(Untagged(functions, 2), "malformed"); // a word
}

TEST(Guess, TheNameOfTheListComesBeforeTheLength) {
    sum::ListFunctions sha3({}, "SHA3SUMS");
    EXPECT_EQ(Untagged(sha3, 32), "SHA3-256?");
    EXPECT_EQ(Untagged(sha3, 20), "SHA1?");
    sum::ListFunctions blake({}, "B2SUMS");
    EXPECT_EQ(Untagged(blake, 32), "BLAKE2b-256?");
    EXPECT_EQ(Untagged(blake, 25), "BLAKE2b-200?");
}

TEST(Guess, ATagTellsTheFunction) {
    sum::ListFunctions functions({}, "list");
    EXPECT_EQ(FunctionsOf(functions, {{"SHA2-256", Digits(32)}}), "SHA256");
    EXPECT_EQ(FunctionsOf(functions, {{"SHA2-256", Digits(31)}}), "malformed");
    EXPECT_EQ(FunctionsOf(functions, {{"SHA384", std::string(64, '0')}}), "SHA384"); // base64
    EXPECT_EQ(FunctionsOf(functions, {{"SHA256", std::string(64, '0')}}), "SHA256");
    EXPECT_EQ(FunctionsOf(functions, {{"TTH", Digits(24)}}), "unknown TTH");
    EXPECT_EQ(FunctionsOf(functions, {{"md5", Digits(16)}, {"sha256", Digits(32)}}), "MD5,SHA256");
    EXPECT_EQ(FunctionsOf(functions, {{"none", Digits(16)}, {"sha256", Digits(32)}}), "SHA256");
}

TEST(Guess, GivenFunctionsAreTheOnlyOnes) {
    const std::vector<sum::FunctionChoice> given = {*sum::ChoiceOfTag("SHA256", 32)};
    sum::ListFunctions functions({given, false}, "list.md5");
    EXPECT_EQ(Untagged(functions, 32), "SHA256");
    EXPECT_EQ(Untagged(functions, 16), "malformed");
    EXPECT_EQ(FunctionsOf(functions, {{"MD5", Digits(16)}}), "malformed");
    EXPECT_EQ(FunctionsOf(functions, {{"md5", Digits(16)}, {"sha256", Digits(32)}}), "SHA256");
}

TEST(Guess, AGivenFunctionOfAnyLengthTakesAny) {
    const std::vector<sum::FunctionChoice> given = {*sum::ChoiceOfTag("BLAKE2b", 64)};
    sum::ListFunctions functions({given, false}, "list");
    EXPECT_EQ(Untagged(functions, 64), "BLAKE2b");
    EXPECT_EQ(Untagged(functions, 25), "BLAKE2b-200");
    EXPECT_EQ(Untagged(functions, 65), "malformed");
    EXPECT_EQ(FunctionsOf(functions, {{"BLAKE2b-256", Digits(32)}}), "BLAKE2b-256");
    EXPECT_EQ(FunctionsOf(functions, {{"SHA256", Digits(32)}}), "malformed");
}

TEST(Guess, PaddingTellsTheLengthOfBase64) {
    const std::vector<sum::FunctionChoice> given = {*sum::ChoiceOfTag("BLAKE2b", 64)};
    sum::ListFunctions functions({given, false}, "list");
    EXPECT_EQ(FunctionsOf(functions, {{"", "QUJD"}}), "BLAKE2b-24");
    EXPECT_EQ(FunctionsOf(functions, {{"", "QUI="}}), "BLAKE2b-16");
}

TEST(Guess, TagsOfGnuToolsAreSpeltAsTheySpellThem) {
    sum::ListFunctions functions({{}, true}, "list");
    EXPECT_EQ(FunctionsOf(functions, {{"SHA256", Digits(32)}}), "SHA256");
    EXPECT_EQ(FunctionsOf(functions, {{"SHA2-256", Digits(32)}}), "SHA256");
    EXPECT_EQ(FunctionsOf(functions, {{"sha2-256", Digits(32)}}), "malformed");
    EXPECT_EQ(FunctionsOf(functions, {{"SHA2-512", Digits(32)}}), "malformed");
    EXPECT_EQ(FunctionsOf(functions, {{"SHA-256", Digits(32)}}), "malformed");
    EXPECT_EQ(FunctionsOf(functions, {{"none", Digits(32)}}), "malformed");
}

TEST(Guess, ADecisionHoldsForItsLengthAndEndsTheGuessing) {
    sum::ListFunctions functions({}, "list");
    EXPECT_EQ(Untagged(functions, 32), "SHA256?");
    functions.Decide(*sum::ChoiceOfTag("SHA3-256", 32));
    EXPECT_EQ(Untagged(functions, 32), "SHA3-256");
    EXPECT_EQ(Untagged(functions, 16), "MD5");
}

} // namespace
