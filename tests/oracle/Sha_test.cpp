// SPDX-License-Identifier: MIT
#include "tests/helpers/ScratchFiles.h"
#include "tests/helpers/ShaRows.h"
#include "tests/oracle/Libgcrypt.h"
#include "tests/reference/Keccak.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace {

using helpers::Bytes;

// libgcrypt's number of a row's function; the rows without one are not in it.
const std::map<std::string, int> algorithms = {
    {"SHA1", GCRY_MD_SHA1},          {"SHA2-256", GCRY_MD_SHA256},   {"SHA2-384", GCRY_MD_SHA384},
    {"SHA2-512", GCRY_MD_SHA512},    {"SHA3-224", GCRY_MD_SHA3_224}, {"SHA3-256", GCRY_MD_SHA3_256},
    {"SHA3-384", GCRY_MD_SHA3_384},  {"SHA3-512", GCRY_MD_SHA3_512}, {"SHAKE-128", GCRY_MD_SHAKE128},
    {"SHAKE-256", GCRY_MD_SHAKE256},
};

class ShaOracle : public testing::Test {
  protected:
    using Hash = std::function<std::string(const std::wstring& path)>;

    struct Row {
        std::string name;
        Hash text; // by the engine
        std::function<std::string(std::span<const std::uint8_t>)>
            expected; // by libgcrypt, or by the reference
    };

    ShaOracle() {
        for (const helpers::ShaRow& row : helpers::ShaRows())
            Add(row, 0, [&](const std::wstring& path) { return helpers::ShaText(row, sha_, path.c_str()); });
        for (const helpers::ShakeRow& row : helpers::ShakeRows())
            Add(row, row.digestSize,
                [&](const std::wstring& path) { return helpers::ShakeText(row, shake_, path.c_str()); });
    }

    helpers::ScratchFiles files_;
    CCrypto_Sha sha_{nullptr};
    CCrypto_Shake shake_{nullptr};
    std::vector<Row> rows_;

  private:
    template <class EngineRow>
    void Add(const EngineRow& row, std::size_t oracleLength, Hash text) {
        const auto found = algorithms.find(row.name);
        if (found == algorithms.end()) {
            rows_.push_back(
                {row.name, text, [&row](auto message) { return helpers::ExpectedText(row, message); }});
            return;
        }
        const int algorithm = found->second;
        rows_.push_back({row.name, text, [algorithm, oracleLength](auto message) {
                             return helpers::ToHex(oracle::Digest(algorithm, message, oracleLength));
                         }});
    }
};

// The chain of the CAVP Monte Carlo tests: each message is made of the three digests before it.
TEST_F(ShaOracle, ChainsOfAThousandDigestsAgree) {
    for (const Row& row : rows_) {
        std::string digests[3] = {"00", "01", "02"};
        std::string expected[3] = {"00", "01", "02"};
        for (std::size_t step = 0; step < 1000; ++step) {
            const Bytes message = helpers::FromHex(digests[0] + digests[1] + digests[2]);
            digests[step % 3] = row.text(files_.Write("file", message));
            expected[step % 3] = row.expected(helpers::FromHex(expected[0] + expected[1] + expected[2]));
        }
        EXPECT_EQ(digests[0], expected[0]) << row.name;
    }
}

// The reference stands in for the functions that libgcrypt does not have, so it is compared with those that
// it has.
TEST_F(ShaOracle, ReferenceSpongeAgreesWithLibgcrypt) {
    for (std::size_t length = 1; length <= 600; ++length) {
        const Bytes message = helpers::PseudoRandomBytes(length, 14);
        EXPECT_EQ(reference::Sponge(144, 0x06, message, 28), oracle::Digest(GCRY_MD_SHA3_224, message))
            << length;
        EXPECT_EQ(reference::Sponge(136, 0x06, message, 32), oracle::Digest(GCRY_MD_SHA3_256, message))
            << length;
        EXPECT_EQ(reference::Sponge(104, 0x06, message, 48), oracle::Digest(GCRY_MD_SHA3_384, message))
            << length;
        EXPECT_EQ(reference::Sponge(72, 0x06, message, 64), oracle::Digest(GCRY_MD_SHA3_512, message))
            << length;
        EXPECT_EQ(reference::Sponge(168, 0x1f, message, length),
                  oracle::Digest(GCRY_MD_SHAKE128, message, length))
            << length;
    }
}

TEST_F(ShaOracle, TwoHundredBytesOfShake128Agree) {
    const Bytes message = helpers::BytesOf("some bytes");
    const std::wstring path = files_.Write("file", message);
    Bytes output(200);
    ASSERT_TRUE(
        shake_.Shake_GetFromFile(path.c_str(), output.data(), 200, CCrypto_Shake::ShakeBufferLen_128));
    EXPECT_EQ(output, oracle::Digest(GCRY_MD_SHAKE128, message, 200));
}

} // namespace
