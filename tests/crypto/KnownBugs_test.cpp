// SPDX-License-Identifier: MIT
// Mistakes that other implementations of these functions are known for, each with a test named after it. More of them,
// which only a whole run can show, are in tests/cli/test_known_bugs_of_others.py.
#include "crypto/CCrypto_Sha.h"
#include "crypto/CCrypto_Tiger.h"
#include "crypto/CCrypto_Whirlpool.h"
#include "crypto/HexString.h"
#include "tests/helpers/DigestText.h"
#include "tests/helpers/RowReference.h"

#include <gtest/gtest.h>

namespace {

using helpers::Bytes;

constexpr std::uint64_t seed = 62;

// The engine reads pieces of its own size, so salts make pieces of 62 bytes at both ends.
TEST(KnownBugsOfOthers, WhirlpoolInputInPiecesOf62Bytes) {
    const helpers::ScratchFiles files;
    const Bytes piece = helpers::PseudoRandomBytes(62, seed);
    CCrypto_Whirlpool engine(nullptr);
    ASSERT_EQ(engine.SetSalt_FromFile(files.Write("salt", piece).c_str(), EnumSaltType::Both), 62u);
    for (std::size_t length = 0; length <= 200; ++length) {
        const Bytes file = helpers::PseudoRandomBytes(length, seed + length);
        EXPECT_EQ(
            helpers::DigestText(file, [&](const wchar_t* path,
                                          char* text) { return engine.GetFromFileAsString(path, text); }),
            helpers::RowReference("WHIRLPOOL", file, piece, EnumSaltType::Both))
            << length << " bytes between two pieces of 62, seed " << seed;
    }
}

TEST(KnownBugsOfOthers, TigerSizesWithSizeMod64Of56AndMore) {
    CCrypto_Tiger engine(nullptr);
    for (std::size_t length = 56; length < 640; length += length % 64 == 63 ? 57 : 1) {
        const Bytes file = helpers::PseudoRandomBytes(length, seed);
        for (const bool tiger2 : {false, true})
            EXPECT_EQ(helpers::DigestText(file,
                                          [&](const wchar_t* path, char* text) {
                                              return engine.GetFromFileAsString(path, text, 1024, 192, tiger2,
                                                                                3);
                                          }),
                      helpers::RowReference(tiger2 ? "TIGER2-192" : "TIGER1-192", file))
                << length << " bytes";
    }
}

// 112 bytes are the first that leave no room for the length, of 16 bytes, in the same block.
TEST(KnownBugsOfOthers, Sha512LengthsWithNMod128Of112) {
    CCrypto_Sha engine(nullptr);
    for (std::size_t block = 0; block < 20; ++block)
        for (const std::size_t length : {128 * block + 111, 128 * block + 112, 128 * block + 113}) {
            const Bytes file = helpers::PseudoRandomBytes(length, seed);
            EXPECT_EQ(helpers::DigestText(file,
                                          [&](const wchar_t* path, char* text) {
                                              return engine.GetSha2_512_FromFileAsString(path, text);
                                          }),
                      helpers::RowReference("SHA2-512", file))
                << length << " bytes";
        }
}

TEST(KnownBugsOfOthers, TextBuffersTooSmallByOne) {
    const Bytes digest = helpers::PseudoRandomBytes(64, seed);
    const std::string whole = helpers::ToHex(digest);
    for (std::uint32_t bytes = 1; bytes <= digest.size(); ++bytes) {
        std::string text(2 * bytes, '#'); // one character short of digits and zero
        HexString_FromBytes(text.data(), 2 * bytes, digest.data(), bytes);
        EXPECT_STREQ(text.c_str(), whole.substr(0, 2 * bytes - 2).c_str());
        EXPECT_EQ(text.back(), '#') << "more was written than whole bytes";
    }
}

TEST(KnownBugsOfOthers, TextBuffersOfSha3TooSmallByOne) {
    const helpers::ScratchFiles files;
    const std::wstring path = files.Write("file", std::string_view("abc"));
    CCrypto_Sha engine(nullptr);
    for (const unsigned short bits : std::initializer_list<unsigned short>{224, 256, 384, 512}) {
        const unsigned int digits = bits / 4u;
        const std::string row = "SHA3-" + std::to_string(bits);
        std::string text(digits + 8, '#');
        ASSERT_TRUE(engine.GetSha3_FromFileAsString(path.c_str(), bits, text.data(), digits, false));
        EXPECT_STREQ(text.c_str(),
                     helpers::RowReference(row, helpers::BytesOf("abc")).substr(0, digits - 2).c_str());
        EXPECT_EQ(text.substr(digits), "########");
    }
}

TEST(KnownBugsOfOthers, ADirectoryThatYieldsTheDigestOfNothing) {
    const helpers::ScratchFiles files;
    CCrypto_Sha engine(nullptr);
    char text[1024] = "as it was";
    EXPECT_FALSE(engine.GetSha2_256_FromFileAsString(files.Directory().wstring().c_str(), text));
    EXPECT_STREQ(text, "as it was");
}

} // namespace
