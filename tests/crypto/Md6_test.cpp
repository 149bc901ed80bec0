// SPDX-License-Identifier: MIT
#include "tests/crypto/Md6Support.h"

namespace {

using namespace md6_tests;

class Md6 : public testing::Test {
  protected:
    helpers::ScratchFiles files_;
    CCrypto_Md6 engine_{nullptr};
};

TEST_F(Md6, FilesAroundTheReadBufferAgreeWithTheReference) {
    const Bytes message = helpers::PseudoRandomBytes(1'048'577, 5);
    for (const std::size_t length : {1'048'575u, 1'048'576u, 1'048'577u}) {
        const Message file = Message(message).first(length);
        EXPECT_EQ(Text(engine_, file, 128), Expected(file, 128)) << length;
    }
}

TEST_F(Md6, ADigestOfNoBitsGivesTrueZerosAndLeavesTheOutputUnwritten) {
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    unsigned char digest[64] = {1, 2, 3};
    EXPECT_TRUE(engine_.GetFromFile(path.c_str(), digest, 64, 0, 0));
    EXPECT_EQ(digest[0], 1);
    EXPECT_EQ(digest[2], 3);
    char text[1024] = "as it was";
    EXPECT_TRUE(engine_.GetFromFileAsString(path.c_str(), text, 1024, 0, 0));
    EXPECT_STREQ(text, ""); // no bytes of the hash value
    EXPECT_FALSE(engine_.GetFromFile(files_.Path("missing").c_str(), digest, 64, 0, 0));
}

TEST_F(Md6, MoreThan512BitsAreRefused) {
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    unsigned char digest[64] = {1};
    char text[1024] = "untouched";
    for (const unsigned short d : std::initializer_list<unsigned short>{513, 520, 4088, 4089, 65535}) {
        EXPECT_FALSE(engine_.GetFromFile(path.c_str(), digest, 64, d, 0)) << d;
        EXPECT_FALSE(engine_.GetFromFileAsString(path.c_str(), text, 1024, d, 0)) << d;
    }
    EXPECT_EQ(digest[0], 1);
    EXPECT_STREQ(text, "untouched");
}

TEST_F(Md6, NeverWritesMoreThanTheWholeBytesOfTheDigest) {
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    for (const unsigned short d : std::initializer_list<unsigned short>{1, 8, 9, 255, 256, 512}) {
        Bytes digest(65, 0xee);
        EXPECT_TRUE(engine_.GetFromFile(path.c_str(), digest.data(), 0, d, 1));
        const std::size_t bytes = (d + 7u) / 8;
        EXPECT_EQ(helpers::ToHex(Message(digest).first(bytes)), Expected(helpers::BytesOf("abc"), d));
        EXPECT_EQ(digest[bytes], 0xee) << d;
    }
}

TEST_F(Md6, NullPointersAndMissingFilesFailAndWriteNothing) {
    const std::wstring path = files_.Write("file", std::string_view("abc"));
    const std::wstring missing = files_.Path("missing");
    unsigned char digest[64] = {1};
    char text[1024] = "untouched";
    EXPECT_FALSE(engine_.GetFromFile(nullptr, digest, 64, 256, 0));
    EXPECT_FALSE(engine_.GetFromFile(path.c_str(), nullptr, 64, 256, 0));
    EXPECT_FALSE(engine_.GetFromFile(missing.c_str(), digest, 64, 256, 0));
    EXPECT_FALSE(engine_.GetFromFileAsString(nullptr, text, 1024, 256, 0));
    EXPECT_FALSE(engine_.GetFromFileAsString(path.c_str(), nullptr, 1024, 256, 0));
    EXPECT_FALSE(engine_.GetFromFileAsString(missing.c_str(), text, 1024, 256, 0));
    EXPECT_EQ(digest[0], 1);
    EXPECT_STREQ(text, "untouched");
}

} // namespace
