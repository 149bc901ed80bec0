// SPDX-License-Identifier: MIT
// Every row of the hash table against libgcrypt where it has the function, and against the references elsewhere.
#include "app/HashTable.h"
#include "fyrn/fyrn.h"

#include "tests/helpers/RowName.h"
#include "tests/helpers/RowReference.h"
#include "tests/helpers/ScratchFiles.h"
#include "tests/oracle/Libgcrypt.h"

#include <gtest/gtest.h>

namespace {

using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

class RowsOracle : public testing::Test {
  protected:
    void ExpectAgreement(Message message) {
        const std::wstring path = files_.Write("file", message);
        for (const HashRow& row : hashTable) {
            const std::string name = helpers::RowName(row);
            const fyrn_function* const function = fyrn_function_find(name.c_str());
            ASSERT_TRUE(row.hash(context_, path.c_str()));
            EXPECT_EQ(context_.hashText, oracle::AlgorithmOf(function)
                                             ? helpers::ToHex(oracle::Digest(function, message))
                                             : helpers::RowReference(name, message))
                << name << ", " << message.size() << " bytes";
        }
    }

    void ExpectAgreementAround(std::size_t border) {
        const Bytes message = helpers::PseudoRandomBytes(border + 1, border);
        for (std::size_t length = border - 1; length <= border + 1; ++length)
            ExpectAgreement(Message(message).first(length));
    }

    RunContext context_;
    helpers::ScratchFiles files_;
};

using RowsOracleSlow = RowsOracle;

#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t lengthStep = 7; // large buffers are slow there
#else
constexpr std::size_t lengthStep = 1;
#endif

TEST_F(RowsOracle, EveryLengthTo4200Agrees) {
    const Bytes message = helpers::PseudoRandomBytes(4200, 41);
    for (std::size_t length = 0; length <= message.size(); length += lengthStep)
        ExpectAgreement(Message(message).first(length));
}

// 1,000,000, 1,048,576 and 2,036,736 bytes are read at a time.
TEST_F(RowsOracleSlow, LengthsAround1000000Agree) {
    ExpectAgreementAround(1'000'000);
}

TEST_F(RowsOracleSlow, LengthsAround1048576Agree) {
    ExpectAgreementAround(1'048'576);
}

TEST_F(RowsOracleSlow, LengthsAround2036736Agree) {
    ExpectAgreementAround(2'036'736);
}

} // namespace
