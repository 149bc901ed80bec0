// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Blake2.h"

#include "tests/helpers/DigestText.h"
#include "tests/oracle/Libgcrypt.h"

#include <gtest/gtest.h>

namespace {

TEST(Blake2Oracle, EveryLengthTo4200AgreesWithLibgcrypt) {
    struct Function {
        int algorithm;
        unsigned char digestLength;
    };
    const Function functions[] = {{GCRY_MD_BLAKE2B_160, 20},
                                  {GCRY_MD_BLAKE2B_256, 32},
                                  {GCRY_MD_BLAKE2B_384, 48},
                                  {GCRY_MD_BLAKE2B_512, 64}};
    CCrypto_Blake2 engine(nullptr);
    for (std::size_t length = 0; length <= 4200; ++length) {
        const helpers::Bytes message = helpers::PseudoRandomBytes(length, 21);
        for (const Function& function : functions) {
            const std::string text = helpers::DigestText(message, [&](const wchar_t* path, char* output) {
                return engine.GetFromFileAsString(path, output, 1024, function.digestLength, nullptr, 0);
            });
            EXPECT_EQ(text, helpers::ToHex(oracle::Digest(function.algorithm, message)))
                << length << " bytes, digest of " << int{function.digestLength};
        }
    }
}

} // namespace
