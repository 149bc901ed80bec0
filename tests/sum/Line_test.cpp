// SPDX-License-Identifier: MIT
#include "sum/Line.h"

#include "sum/Escape.h"

#include <gtest/gtest.h>

namespace sum {
namespace {

std::vector<std::byte> Bytes(std::initializer_list<int> values) {
    std::vector<std::byte> bytes;
    for (const int value : values)
        bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

FunctionChoice Choice(const char* name) {
    return ChoiceOf(fyrn::Function::Named(name));
}

class Lines : public testing::Test {
  protected:
    // The lines of a file of 1025 bytes that have these digests.
    std::string Written(const Name& name) {
        const LineWriter writer(options,
                                std::make_shared<const std::vector<FunctionChoice>>(options.functions));
        std::string lines = writer.Header();
        EXPECT_EQ(writer.Append(lines, &name, result, 0), fits);
        return lines;
    }

    Options options;
    FileResult result{0, 1025, {Bytes({0x0a, 0xb1, 0xff, 0x00})}};
    bool fits = true;

    void SetUp() override { options.functions = {Choice("CRC-32")}; }
};

TEST_F(Lines, UntaggedHaveTheDigestFirst) {
    EXPECT_EQ(Written("f"), "0ab1ff00  f\n");
    options.star = true;
    EXPECT_EQ(Written("f"), "0ab1ff00 *f\n");
}

TEST_F(Lines, TaggedNameTheFunction) {
    options.form = Form::tagged;
    EXPECT_EQ(Written("f"), "CRC32 (f) = 0ab1ff00\n");
}

TEST_F(Lines, EscapedNamesAreMarked) {
    EXPECT_EQ(Written("a\\b\nc\rd"), "\\0ab1ff00  a\\\\b\\nc\\rd\n");
    options.form = Form::tagged;
    EXPECT_EQ(Written("a\nb"), "\\CRC32 (a\\nb) = 0ab1ff00\n");
}

TEST_F(Lines, EndedByNulNeedNoEscapes) {
    options.zero = true;
    EXPECT_EQ(Written("a\nb\\"), std::string("0ab1ff00  a\nb\\\0", 15));
}

TEST_F(Lines, Base64HasThePaddingOfTheStandard) {
    options.encoding = Encoding::base64;
    EXPECT_EQ(Written("f"), "CrH/AA==  f\n");
    // RFC 4648, section 10.
    EXPECT_EQ(ToBase64({}), "");
    EXPECT_EQ(ToBase64(std::as_bytes(std::span("f", 1))), "Zg==");
    EXPECT_EQ(ToBase64(std::as_bytes(std::span("fo", 2))), "Zm8=");
    EXPECT_EQ(ToBase64(std::as_bytes(std::span("foo", 3))), "Zm9v");
    EXPECT_EQ(ToBase64(std::as_bytes(std::span("foob", 4))), "Zm9vYg==");
    EXPECT_EQ(ToBase64(std::as_bytes(std::span("fooba", 5))), "Zm9vYmE=");
    EXPECT_EQ(ToBase64(std::as_bytes(std::span("foobar", 6))), "Zm9vYmFy");
}

TEST_F(Lines, RawIsTheDigestAlone) {
    options.encoding = Encoding::raw;
    EXPECT_EQ(Written("f"), std::string("\x0a\xb1\xff\x00", 4));
}

TEST_F(Lines, OfSeveralFunctionsFollowTheirOrder) {
    options.functions = {Choice("CRC-16"), Choice("CRC-32")};
    options.form = Form::tagged;
    result.digests = {Bytes({1, 2}), Bytes({3, 4, 5, 6})};
    EXPECT_EQ(Written("f"), "CRC16-USB (f) = 0102\nCRC32 (f) = 03040506\n");
}

TEST_F(Lines, SfvHasTheNameFirst) {
    options.form = Form::sfv;
    EXPECT_EQ(Written("a b"), "; Written by fyrnsum\na b 0AB1FF00\n");
}

TEST_F(Lines, NamesThatAFormCannotHoldAreRefused) {
    fits = false;
    options.form = Form::sfv;
    for (const char* const name : {";f", "a\nb", "a\rb"})
        EXPECT_EQ(Written(name), "; Written by fyrnsum\n") << name;
    options.form = Form::hashdeep;
    EXPECT_EQ(Written("a\nb"), "%%%% HASHDEEP-1.0\n%%%% size,crc32,filename\n");
}

TEST_F(Lines, HashdeepHasSizeAndDigestsInColumns) {
    options.form = Form::hashdeep;
    options.functions = {Choice("CRC-16"), Choice("CRC-32")};
    result.digests = {Bytes({1, 2}), Bytes({3, 4, 5, 6})};
    EXPECT_EQ(Written("a,b"),
              "%%%% HASHDEEP-1.0\n%%%% size,crc16-usb,crc32,filename\n1025,0102,03040506,a,b\n");
}

TEST_F(Lines, BagitEscapesByPercentSigns) {
    options.form = Form::bagit;
    EXPECT_EQ(Written("data/50%\r\n\\"), "0ab1ff00  data/50%25%0D%0A\\\n");
}

TEST_F(Lines, JsonIsOneObject) {
    options.form = Form::json;
    EXPECT_EQ(Written("a\"b\\\n\x01\x7f\xc3\xa4"),
              "{\"path\":\"a\\\"b\\\\\\n\\u0001\\u007f\xc3\xa4\",\"size\":1025,\"crc32\":\"0ab1ff00\"}\n");
}

TEST_F(Lines, JsonKeepsNamesThatAreNoText) {
    options.form = Form::json;
    EXPECT_EQ(Written("\xff"), "{\"path_base64\":\"/w==\",\"size\":1025,\"crc32\":\"0ab1ff00\"}\n");
}

TEST_F(Lines, OfTheOldestChecksumsAreNumbers) {
    FunctionChoice choice = Choice("CRC-32");
    choice.legacy = Legacy::crc;
    options.functions = {choice};
    EXPECT_EQ(Written("a\nb"), "179437312 1025 a\nb\n");
    result.digests = {Bytes({0, 7})};
    options.functions[0].legacy = Legacy::bsd;
    EXPECT_EQ(Written("f"), "00007     2 f\n");
    options.functions[0].legacy = Legacy::sysv;
    EXPECT_EQ(Written("f"), "7 3 f\n");
}

} // namespace
} // namespace sum
