// SPDX-License-Identifier: MIT
// The library's functions that the program has no row for, against libgcrypt; and their references.
#include "fyrn/fyrn.h"
#include "tests/helpers/FunctionReference.h"
#include "tests/oracle/Libgcrypt.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using helpers::Bytes;

const std::map<std::string, int> algorithms = {
    {"RIPEMD-160", GCRY_MD_RMD160},       {"SHA2-224", GCRY_MD_SHA224}, {"SHA2-512/224", GCRY_MD_SHA512_224},
    {"SHA2-512/256", GCRY_MD_SHA512_256}, {"SM3", GCRY_MD_SM3},
};

TEST(FunctionsOracle, EveryLengthTo600Agrees) {
    for (const auto& [name, algorithm] : algorithms) {
        const fyrn_function* const function = fyrn_function_find(name.c_str());
        ASSERT_NE(function, nullptr) << name;
        for (std::size_t length = 0; length <= 600; ++length) {
            const Bytes message = helpers::PseudoRandomBytes(length, 43);
            const Bytes expected = oracle::Digest(algorithm, message);
            Bytes digest(fyrn_function_digest_size(function));
            ASSERT_EQ(fyrn_digest(function, message.data(), message.size(), digest.data()), 0);
            EXPECT_EQ(digest, expected) << name << ", " << length;
            EXPECT_EQ(helpers::FunctionReference(name, message, digest.size()), expected)
                << name << ", " << length;
        }
    }
}

} // namespace
