// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Md5.h"

#include "tests/helpers/DigestText.h"
#include "tests/oracle/Libgcrypt.h"

#include <gtest/gtest.h>

namespace {

TEST(Md5Oracle, EveryLengthTo300AgreesWithLibgcrypt) {
    CCrypto_Md5 engine(nullptr);
    for (std::size_t length = 0; length <= 300; ++length) {
        const helpers::Bytes message = helpers::PseudoRandomBytes(length, 5);
        const std::string text = helpers::DigestText(message, [&](const wchar_t* path, char* output) {
            return engine.GetFromFileAsString(path, output);
        });
        EXPECT_EQ(text, helpers::ToHex(oracle::Digest(GCRY_MD_MD5, message))) << length << " bytes";
    }
}

} // namespace
