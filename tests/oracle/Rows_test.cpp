// SPDX-License-Identifier: MIT
// Every row of the hash table against libgcrypt where it has the function, and against the references elsewhere.
#include "app/HashTable.h"

#include "tests/helpers/RowName.h"
#include "tests/helpers/RowReference.h"
#include "tests/helpers/ScratchFiles.h"
#include "tests/oracle/Libgcrypt.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

// libgcrypt's number of a row's function. The shorter digests of Tiger are the first bytes of the long one.
const std::map<std::string, int> algorithms = {
    {"BLAKE2-160", GCRY_MD_BLAKE2B_160},
    {"BLAKE2-256", GCRY_MD_BLAKE2B_256},
    {"BLAKE2-384", GCRY_MD_BLAKE2B_384},
    {"BLAKE2-512", GCRY_MD_BLAKE2B_512},
    {"CRC-32", GCRY_MD_CRC32},
    {"MD4", GCRY_MD_MD4},
    {"MD5", GCRY_MD_MD5},
    {"SHA1", GCRY_MD_SHA1},
    {"SHA2-256", GCRY_MD_SHA256},
    {"SHA2-384", GCRY_MD_SHA384},
    {"SHA2-512", GCRY_MD_SHA512},
    {"SHA3-224", GCRY_MD_SHA3_224},
    {"SHA3-256", GCRY_MD_SHA3_256},
    {"SHA3-384", GCRY_MD_SHA3_384},
    {"SHA3-512", GCRY_MD_SHA3_512},
    {"SHAKE-128", GCRY_MD_SHAKE128},
    {"SHAKE-256", GCRY_MD_SHAKE256},
    {"TIGER1-128", GCRY_MD_TIGER1},
    {"TIGER1-160", GCRY_MD_TIGER1},
    {"TIGER1-192", GCRY_MD_TIGER1},
    {"TIGER2-128", GCRY_MD_TIGER2},
    {"TIGER2-160", GCRY_MD_TIGER2},
    {"TIGER2-192", GCRY_MD_TIGER2},
    {"WHIRLPOOL", GCRY_MD_WHIRLPOOL},
};

// Bytes of output, where libgcrypt leaves them open.
std::size_t OutputLength(int algorithm) {
    return algorithm == GCRY_MD_SHAKE128 ? 16 : algorithm == GCRY_MD_SHAKE256 ? 32 : 0;
}

class RowsOracle : public testing::Test {
  protected:
    RowsOracle() {
        for (const HashRow& row : hashTable) {
            const auto found = algorithms.find(helpers::RowName(row));
            algorithms_.push_back(found == algorithms.end() ? 0 : found->second);
        }
    }

    // The digest that row number i must print; in the case of Tiger, more than it prints.
    std::string Expected(std::size_t i, Message message) const {
        const int algorithm = algorithms_[i];
        return algorithm != 0 ? helpers::ToHex(oracle::Digest(algorithm, message, OutputLength(algorithm)))
                              : helpers::RowReference(helpers::RowName(hashTable[i]), message);
    }

    void ExpectAgreement(Message message) {
        const std::wstring path = files_.Write("file", message);
        for (std::size_t i = 0; i < hashRowCount; ++i) {
            ASSERT_TRUE(hashTable[i].hash(context_, path.c_str()));
            const std::string digest = context_.hashText;
            std::string expected = Expected(i, message);
            if (expected.size() == 48)
                expected.resize(std::min(digest.size(), expected.size()));
            EXPECT_EQ(digest, expected)
                << helpers::RowName(hashTable[i]) << ", " << message.size() << " bytes";
        }
    }

    void ExpectAgreementAround(std::size_t border) {
        const Bytes message = helpers::PseudoRandomBytes(border + 1, border);
        for (std::size_t length = border - 1; length <= border + 1; ++length)
            ExpectAgreement(Message(message).first(length));
    }

    RunContext context_;
    helpers::ScratchFiles files_;

  private:
    std::vector<int> algorithms_; // of each row; 0: libgcrypt does not have it
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

// What stands in for libgcrypt is compared with it where it can be.
TEST_F(RowsOracle, ReferencesAgreeWithLibgcrypt) {
    for (std::size_t i = 0; i < hashRowCount; ++i) {
        const std::string name = helpers::RowName(hashTable[i]);
        if (!algorithms.contains(name))
            continue;
        for (std::size_t length = 0; length <= 600; ++length) {
            const Bytes message = helpers::PseudoRandomBytes(length, 42);
            const std::string digest = helpers::RowReference(name, message);
            EXPECT_EQ(digest, Expected(i, message).substr(0, digest.size())) << name << ", " << length;
        }
    }
}

} // namespace
