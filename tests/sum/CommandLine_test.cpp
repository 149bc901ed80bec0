// SPDX-License-Identifier: MIT
#include "sum/CommandLine.h"

#include "sum/OptionTable.h"

#include <gtest/gtest.h>
#include <set>

namespace sum {
namespace {

Options Read(std::vector<std::string> arguments, const char* tool = "fyrnsum") {
    return ReadCommandLine(ToolCalled(tool), arguments);
}

// What is said of arguments that make no sense.
std::string Complaint(const std::vector<std::string>& arguments, const char* tool = "fyrnsum") {
    try {
        Read(arguments, tool);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "nothing";
}

using Names = std::vector<Name>;

TEST(CommandLine, NothingMeansSha256OfStandardInput) {
    const Options options = Read({});
    EXPECT_EQ(options.operands, Names{"-"});
    EXPECT_FALSE(options.namesGiven);
    ASSERT_EQ(options.functions.size(), 1u);
    EXPECT_EQ(options.functions[0].tag, "SHA256");
    EXPECT_FALSE(options.functionsGiven);
    EXPECT_EQ(options.form, Form::untagged);
}

TEST(CommandLine, OptionsAndNamesMayBeMixed) {
    const Options options = Read({"a", "-z", "b", "--", "-z", "--tag"});
    EXPECT_EQ(options.operands, (Names{"a", "b", "-z", "--tag"}));
    EXPECT_TRUE(options.zero);
    EXPECT_EQ(options.form, Form::untagged);
}

TEST(CommandLine, LettersMayStandTogether) {
    const Options options = Read({"-zramd5", "x"});
    EXPECT_TRUE(options.zero);
    EXPECT_TRUE(options.recursive);
    EXPECT_EQ(options.functions[0].tag, "MD5");
}

TEST(CommandLine, LongOptionsMayBeShortened) {
    EXPECT_TRUE(Read({"--rec", "x"}).recursive);
    EXPECT_EQ(Read({"--alg=md5"}).functions[0].tag, "MD5");
    EXPECT_EQ(Read({"--alg", "md5"}).functions[0].tag, "MD5");
    EXPECT_EQ(Complaint({"--s"}), "option '--s' is ambiguous; possibilities: '--status' '--strict'");
    EXPECT_EQ(Read({"--raw", "x"}).encoding, Encoding::raw);
    EXPECT_EQ(Complaint({"--files"}),
              "option '--files' is ambiguous; possibilities: '--files-from' '--files0-from'");
}

TEST(CommandLine, ComplaintsAreThoseOfGetopt) {
    EXPECT_EQ(Complaint({"--foo=1"}), "unrecognized option '--foo=1'");
    EXPECT_EQ(Complaint({"-Q"}), "invalid option -- 'Q'");
    EXPECT_EQ(Complaint({"--tag=x"}), "option '--tag' doesn't allow an argument");
    EXPECT_EQ(Complaint({"--length"}), "option '--length' requires an argument");
    EXPECT_EQ(Complaint({"-l"}), "option requires an argument -- 'l'");
    EXPECT_EQ(Complaint({"-r"}, "md5sum"), "invalid option -- 'r'");
}

TEST(CommandLine, SeveralFunctionsAreTaggedAndEachIsThereOnce) {
    const Options options = Read({"-a", "md5,SHA-256", "-a", "sha2-256", "-asha1"});
    ASSERT_EQ(options.functions.size(), 3u);
    EXPECT_EQ(options.functions[1].tag, "SHA256");
    EXPECT_EQ(options.functions[2].tag, "SHA1");
    EXPECT_EQ(options.form, Form::tagged);
    EXPECT_EQ(Read({"-a", "md5,sha1", "--untagged"}).form, Form::untagged);
    EXPECT_EQ(Read({"-a", "md5,sha1", "-o", "x-{alg}"}).form, Form::untagged);
}

TEST(CommandLine, LengthsChooseTheMemberOfAFamily) {
    EXPECT_EQ(Read({"-a", "sha3", "-l", "384"}).functions[0].tag, "SHA3-384");
    EXPECT_EQ(Read({"-l", "224", "-a", "sha2"}).functions[0].tag, "SHA224");
    EXPECT_EQ(Read({"-a", "blake2b", "-l", "256"}).functions[0].tag, "BLAKE2b-256");
    EXPECT_EQ(Read({"-a", "blake2b", "-l", "200"}).functions[0].tag, "BLAKE2b-200");
    EXPECT_EQ(Read({"-a", "blake2b", "-l", "0"}).functions[0].tag, "BLAKE2b");
    EXPECT_EQ(Read({"-a", "shake128", "-l", "4096"}).functions[0].digestSize, 512u);
}

TEST(CommandLine, LengthsThatAreNoneAreRefused) {
    EXPECT_EQ(Complaint({"-a", "blake2b", "-l", "520"}), "maximum digest length for 'BLAKE2b' is 512 bits");
    EXPECT_EQ(Complaint({"-a", "blake2b", "-l", "9"}), "length is not a multiple of 8");
    EXPECT_EQ(Complaint({"-l", "8x"}), "invalid length: '8x'");
    EXPECT_EQ(Complaint({"-l", ""}), "invalid length: ''");
    EXPECT_EQ(Complaint({"-a", "sha3", "-l", "8"}), "digest length for 'SHA3' must be 224, 256, 384, or 512");
    EXPECT_EQ(Complaint({"-a", "sha2"}),
              "--algorithm=sha2 requires specifying --length 224, 256, 384, or 512");
    EXPECT_EQ(Complaint({"-a", "md5", "-l", "8"}, "cksum"),
              "--length is only supported with --algorithm blake2b, sha2, or sha3");
}

TEST(CommandLine, ACheckTakesEveryMemberOfAFamily) {
    EXPECT_EQ(Read({"-c", "-a", "sha3"}).functions.size(), 4u);
}

TEST(CommandLine, TheLastOfStatusWarnAndQuietCounts) {
    const CheckOptions warned = Read({"-c", "--status", "--quiet", "-w"}).checking;
    EXPECT_TRUE(warned.warn);
    EXPECT_FALSE(warned.status);
    EXPECT_FALSE(warned.quiet);
    EXPECT_TRUE(Read({"-c", "-w", "--status"}).checking.status);
}

TEST(CommandLine, WhatDoesNotGoTogetherIsRefused) {
    EXPECT_EQ(Complaint({"--tag", "--text"}), "--tag does not support --text mode");
    EXPECT_EQ(Complaint({"--text", "--tag"}), "nothing");
    EXPECT_EQ(Complaint({"-c", "--tag"}), "the --tag option is meaningless when verifying checksums");
    EXPECT_EQ(Complaint({"-c", "-b"}),
              "the --binary and --text options are meaningless when verifying checksums");
    EXPECT_EQ(Complaint({"-c", "-z"}), "the --zero option is not supported when verifying checksums");
    EXPECT_EQ(Complaint({"--strict"}), "the --strict option is meaningful only when verifying checksums");
    EXPECT_EQ(Complaint({"--raw", "a", "b"}), "the --raw option is not supported with multiple files");
    EXPECT_EQ(Complaint({"--raw", "-amd5,sha1"}),
              "the --raw option is not supported with multiple functions");
    EXPECT_EQ(Complaint({"--raw", "--base64"}), "--base64 and --raw are mutually exclusive");
    EXPECT_EQ(Complaint({"--files-from=x", "y"}), "file operands cannot be combined with --files-from");
    EXPECT_EQ(Complaint({"--format=sfv", "-amd5"}), "--format=sfv is for --algorithm=crc32 only");
    EXPECT_EQ(Complaint({"-j0"}), "invalid number of jobs: '0'");
}

TEST(CommandLine, FormsBringTheFunctionsThatTheirReadersKnow) {
    EXPECT_EQ(Read({"--format=sfv"}).functions[0].tag, "CRC32");
    const Options options = Read({"--format=hashdeep"});
    ASSERT_EQ(options.functions.size(), 2u);
    EXPECT_EQ(options.functions[0].tag, "MD5");
    EXPECT_EQ(options.functions[1].tag, "SHA256");
}

TEST(CommandLine, ToolsHaveTheirOwnDefaults) {
    EXPECT_EQ(Read({}, "/usr/bin/sha512sum").functions[0].tag, "SHA512");
    EXPECT_EQ(Read({}, "b2sum.exe").functions[0].tag, "BLAKE2b");
    EXPECT_EQ(Read({"-l", "128"}, "b2sum").functions[0].tag, "BLAKE2b-128");
    EXPECT_EQ(Read({"-a", "md5"}, "cksum").form, Form::tagged);
    EXPECT_EQ(Read({"-a", "md5", "--untagged"}, "cksum").form, Form::untagged);
    EXPECT_EQ(Read({}, "cksum").functions[0].legacy, Legacy::crc);
    EXPECT_EQ(Read({"-rs"}, "sum").functions[0].legacy, Legacy::sysv);
    EXPECT_EQ(Read({"-s", "-r"}, "sum").functions[0].legacy, Legacy::bsd);
    EXPECT_EQ(Read({}, "renamed").functions[0].tag, "SHA256");
}

TEST(OptionTable, NoToolHasAnOptionTwice) {
    for (const Tool& tool : Tools()) {
        std::set<char> letters;
        std::set<std::string_view> names;
        for (const OptionRow& row : OptionTable()) {
            if (!Has(row, tool))
                continue;
            EXPECT_TRUE(row.letter == 0 || letters.insert(row.letter).second)
                << tool.name << " -" << row.letter;
            EXPECT_TRUE(row.name.empty() || names.insert(row.name).second) << tool.name << " --" << row.name;
        }
        EXPECT_GE(names.size(), 3u) << tool.name;
    }
}

} // namespace
} // namespace sum
