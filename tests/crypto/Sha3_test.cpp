// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Sha.h"

#include "tests/helpers/ScratchFiles.h"
#include "tests/reference/Keccak.h"

#include <gtest/gtest.h>

namespace {

using helpers::Bytes;

class Sha3 : public testing::Test {
  protected:
    helpers::ScratchFiles files_;
    std::wstring path_ = files_.Write("file", std::string_view("some bytes"));
    CCrypto_Sha engine_{nullptr};
};

TEST_F(Sha3, DigestLengthsThatDoNotExistGiveFalse) {
    for (unsigned int bits = 0; bits <= 0xffff; ++bits) {
        if (bits == 224 || bits == 256 || bits == 384 || bits == 512)
            continue;
        unsigned char digest[64] = {0x5a};
        ASSERT_FALSE(
            engine_.GetSha3_FromFile(path_.c_str(), static_cast<unsigned short>(bits), digest, false));
        ASSERT_EQ(digest[0], 0x5a) << bits;
    }
}

TEST_F(Sha3, TextIsCutToTheWholeBytesThatFit) {
    char whole[129];
    ASSERT_TRUE(engine_.GetSha3_FromFileAsString(path_.c_str(), 512, whole, sizeof whole, true));
    ASSERT_EQ(std::string(whole).size(), 128u);
    for (unsigned int capacity = 1; capacity <= 140; ++capacity) {
        std::string text(capacity + 1, '!');
        ASSERT_TRUE(engine_.GetSha3_FromFileAsString(path_.c_str(), 512, text.data(), capacity, true));
        EXPECT_EQ(std::string(text.c_str()), std::string(whole).substr(0, (capacity - 1) / 2 * 2))
            << capacity;
        EXPECT_EQ(text.back(), '!') << capacity;
    }
}

TEST_F(Sha3, NoCapacityWritesNothing) {
    char text[129] = "as it was";
    EXPECT_TRUE(engine_.GetSha3_FromFileAsString(path_.c_str(), 256, text, 0, false));
    EXPECT_STREQ(text, "as it was");
}

TEST_F(Sha3, AbsorbBlockAddsLanesAndPermutes) {
    const Bytes block = helpers::PseudoRandomBytes(168, 9);
    for (const std::size_t lanes : {0u, 9u, 13u, 17u, 18u, 21u}) {
        reference::KeccakState expected = {1, 2, 3};
        reference::KeccakState state = expected;
        reference::KeccakAbsorb(expected, block.data(), lanes);
        CCrypto_Sha::Keccak_AbsorbBlock(state.data(), lanes == 0 ? nullptr : block.data(), lanes);
        EXPECT_EQ(state, expected) << lanes << " lanes";
    }
}

} // namespace
