// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Whirlpool.h"

#include "tests/helpers/DigestText.h"
#include "tests/oracle/Libgcrypt.h"

#include <gtest/gtest.h>

namespace {

void ExpectAgreement(CCrypto_Whirlpool& engine, std::size_t length) {
    const helpers::Bytes message = helpers::PseudoRandomBytes(length, 22);
    const std::string text = helpers::DigestText(
        message, [&](const wchar_t* path, char* output) { return engine.GetFromFileAsString(path, output); });
    EXPECT_EQ(text, helpers::ToHex(oracle::Digest(GCRY_MD_WHIRLPOOL, message))) << length << " bytes";
}

TEST(WhirlpoolOracle, EveryLengthTo4200AgreesWithLibgcrypt) {
    CCrypto_Whirlpool engine(nullptr);
    for (std::size_t length = 0; length <= 4200; ++length)
        ExpectAgreement(engine, length);
}

TEST(WhirlpoolOracle, LengthsAroundTheReadBufferAgreeWithLibgcrypt) {
    CCrypto_Whirlpool engine(nullptr);
    for (const std::size_t border : {1'000'000u, 1'048'576u, 2'000'000u})
        for (std::size_t length = border - 1; length <= border + 1; ++length)
            ExpectAgreement(engine, length);
}

} // namespace
