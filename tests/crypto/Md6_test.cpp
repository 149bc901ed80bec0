// SPDX-License-Identifier: MIT
#include "tests/crypto/Md6Support.h"

#include "tests/helpers/KnownRuns.h"

namespace {

using namespace md6_tests;

class Md6 : public testing::Test {
  protected:
    void ExpectReferenceDigests(Message message, std::span<const unsigned short> sizes) {
        const std::wstring path = files_.Write("file", message);
        for (const unsigned short d : sizes)
            EXPECT_EQ(Text(engine_, path.c_str(), d), Expected(message, d))
                << message.size() << " bytes, " << d << " bits";
    }

    helpers::ScratchFiles files_;
    CCrypto_Md6 engine_{nullptr};
};

using Md6Slow = Md6;

TEST_F(Md6, EmptyFileIsOnePaddedRootNode) {
    for (const unsigned short d : digestSizes) {
        std::uint64_t value[16], key[8] = {}, block[64] = {};
        const std::vector<std::uint64_t> q = reference::Md6Q();
        ASSERT_EQ(
            engine_.Md6_CompressStandard(value, q.data(), key, 1, 0, 40 + d / 4, 64, true, 4096, 0, d, block),
            0);
        std::string whole;
        for (const std::uint64_t word : value)
            for (int shift = 56; shift >= 0; shift -= 8)
                whole += helpers::ToHex(Bytes{static_cast<std::uint8_t>(word >> shift)});
        EXPECT_EQ(Text(engine_, Message(), d), whole.substr(256 - d / 4u)) << d;
    }
}

TEST_F(Md6, FileOf512BytesIsOneRootNodeWithoutPadding) {
    const Bytes message = helpers::PseudoRandomBytes(513, 1);
    ExpectReferenceDigests(Message(message).first(511), digestSizes);
    ExpectReferenceDigests(Message(message).first(512), digestSizes);
    ExpectReferenceDigests(Message(message).first(513), digestSizes);
}

TEST_F(Md6, EveryDigestSizeFrom1To512Bits) {
    const Bytes message = helpers::PseudoRandomBytes(1500, 2);
    for (unsigned short d = 1; d <= 512; ++d)
        ExpectReferenceDigests(message, std::span(&d, 1));
}

TEST_F(Md6, EveryLengthTo4200AgreesWithTheReference) {
    const Bytes message = helpers::PseudoRandomBytes(4200, 3);
    const unsigned short sizes[] = {256};
    for (std::size_t length = 0; length <= message.size(); ++length)
        ExpectReferenceDigests(Message(message).first(length), sizes);
}

TEST_F(Md6Slow, EveryLengthTo4200AgreesWithTheReferenceForAllSizes) {
    const Bytes message = helpers::PseudoRandomBytes(4200, 4);
    for (std::size_t length = 0; length <= message.size(); ++length)
        ExpectReferenceDigests(Message(message).first(length), digestSizes);
}

TEST_F(Md6, FilesAroundTheReadBufferAgreeWithTheReference) {
    const Bytes message = helpers::PseudoRandomBytes(1'048'577, 5);
    const unsigned short sizes[] = {128};
    for (const std::size_t length : {1'048'575u, 1'048'576u, 1'048'577u})
        ExpectReferenceDigests(Message(message).first(length), sizes);
}

TEST_F(Md6, OneEngineServesAThousandFilesInSequence) {
    const Bytes salt = helpers::PseudoRandomBytes(70, 6);
    const std::wstring saltPath = files_.Write("salt", salt);
    const Bytes bytes = helpers::PseudoRandomBytes(10'000, 7);
    for (std::size_t i = 0; i < 1000; ++i) {
        const Message file = Message(bytes).first(i * 7919 % bytes.size());
        const unsigned short d = digestSizes[i % std::size(digestSizes)];
        const bool salted = i % 2 != 0;
        if (salted) {
            engine_.SetSalt_FromFile(saltPath.c_str(), EnumSaltType::After);
            Bytes message(file.begin(), file.end());
            message.insert(message.end(), salt.begin(), salt.end());
            EXPECT_EQ(Text(engine_, file, d), Expected(message, d, KeyOf(salt))) << i;
        } else {
            engine_.SetSalt_FromFile(files_.Path("missing").c_str(), EnumSaltType::After);
            EXPECT_EQ(Text(engine_, file, d), Expected(file, d)) << i;
        }
    }
}

TEST_F(Md6, KnownRunsAreReproduced) {
    std::size_t count = 0;
    for (const unsigned short d : digestSizes)
        for (const helpers::KnownRun& run : helpers::KnownRunsOf("MD6-" + std::to_string(d))) {
            CCrypto_Md6 engine(nullptr);
            if (!run.salt.label.empty())
                engine.SetSalt_FromFile(files_.Write("salt", run.salt.Content()).c_str(), run.placement);
            EXPECT_EQ(Text(engine, Message(run.file.Content()), d), run.digest)
                << run.file.label << " " << run.salt.label << " " << static_cast<int>(run.placement);
            ++count;
        }
    EXPECT_EQ(count, 55u);
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
