// SPDX-License-Identifier: MIT
// Every function of the library that libgcrypt has, and its reference, against libgcrypt. The references stand in for it
// where it does not have the function.
#include "fyrn/fyrn.h"
#include "tests/helpers/FunctionReference.h"
#include "tests/oracle/Libgcrypt.h"

#include <gtest/gtest.h>

namespace {

using helpers::Bytes;

Bytes Digest(const fyrn_function* function, const Bytes& message) {
    Bytes digest(fyrn_function_digest_size(function));
    EXPECT_EQ(fyrn_digest(function, message.data(), message.size(), digest.data()), 0);
    return digest;
}

TEST(FunctionsOracle, EveryLengthTo600Agrees) {
    std::size_t compared = 0;
    for (std::size_t i = 0; i < fyrn_function_count(); ++i) {
        const fyrn_function* const function = fyrn_function_at(i);
        const std::string name = fyrn_function_name(function);
        if (!oracle::AlgorithmOf(function))
            continue;
        ++compared;
        for (std::size_t length = 0; length <= 600; ++length) {
            const Bytes message = helpers::PseudoRandomBytes(length, 43);
            const Bytes expected = oracle::Digest(function, message);
            ASSERT_EQ(Digest(function, message), expected) << name << ", " << length;
            ASSERT_EQ(helpers::FunctionReference(name, message, expected.size()), expected)
                << name << ", " << length;
        }
    }
    EXPECT_GE(compared, 29u) << "functions that libgcrypt 1.10 has";
}

} // namespace
