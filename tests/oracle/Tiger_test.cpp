// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Tiger.h"

#include "tests/helpers/DigestText.h"
#include "tests/oracle/Libgcrypt.h"

#include <gtest/gtest.h>

namespace {

TEST(TigerOracle, EveryLengthTo4200AgreesWithLibgcrypt) {
    CCrypto_Tiger engine(nullptr);
    const helpers::Bytes bytes = helpers::PseudoRandomBytes(4200, 5);
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const std::span<const std::uint8_t> message = std::span(bytes).first(length);
        for (const bool tiger2 : {false, true}) {
            const std::string text = helpers::DigestText(message, [&](const wchar_t* path, char* output) {
                return engine.GetFromFileAsString(path, output, 1024, 192, tiger2, 3);
            });
            const int algorithm = tiger2 ? GCRY_MD_TIGER2 : GCRY_MD_TIGER1;
            EXPECT_EQ(text, helpers::ToHex(oracle::Digest(algorithm, message))) << length << " bytes";
        }
    }
}

} // namespace
