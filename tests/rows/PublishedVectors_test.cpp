// SPDX-License-Identifier: MIT
// Digests from publications and other implementations. The head of each file in tests/data says where they come
// from. The references of tests/reference are held to them as well, so that they can stand in where there is no
// published digest.
#include "tests/helpers/KnownAnswers.h"
#include "tests/helpers/RowName.h"
#include "tests/helpers/RowReference.h"
#include "tests/helpers/VectorLines.h"
#include "tests/rows/RowTexts.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace {

using helpers::Bytes;
using helpers::KnownAnswer;

constexpr const char* files[] = {
    "blake2b.txt",      "keccak_kat.txt",    "md4_rfc1320.txt",  "md5_rfc1321.txt",      "md6.txt",
    "sha3_cavp.txt",    "sha_cavp.txt",      "sha_examples.txt", "skein_golden_kat.txt", "tiger2.txt",
    "tiger_nessie.txt", "whirlpool_iso.txt",
};

constexpr std::size_t slowForReferences = 20'000; // bytes; the references take seconds for a million

std::vector<KnownAnswer> AnswersIn(const std::string& file) {
    return helpers::KnownAnswers(helpers::VectorLines(file));
}

TEST(PublishedVectors, EveryRowGivesTheirDigests) {
    row_tests::RowTexts texts;
    for (const char* file : files)
        for (const auto& [function, message, digest] : AnswersIn(file))
            EXPECT_EQ(texts.Of(function, message), digest)
                << file << ", " << function << ", " << message.size() << " bytes";
}

TEST(PublishedVectors, EveryReferenceGivesTheirDigests) {
    for (const char* file : files)
        for (const auto& [function, message, digest] : AnswersIn(file)) {
            if (message.size() < slowForReferences) {
                EXPECT_EQ(helpers::RowReference(function, message), digest)
                    << file << ", " << function << ", " << message.size() << " bytes";
            }
        }
}

// The shorter digests of Tiger are cut from the long one, and of SHAKE-512 and the small BLAKE2 nobody publishes any.
// CRCs have check values in their own test.
TEST(PublishedVectors, AreThereForAllOtherRows) {
    std::set<std::string> without;
    for (const HashRow& row : hashTable)
        without.insert(helpers::RowName(row));
    for (const char* file : files)
        for (const KnownAnswer& answer : AnswersIn(file))
            without.erase(answer.function);
    const std::set<std::string> expected = {"BLAKE2-128", "BLAKE2-160", "CRC-16",     "CRC-32",
                                            "CRC-64",     "SHAKE-512",  "TIGER1-128", "TIGER1-160",
                                            "TIGER2-128", "TIGER2-160"};
    EXPECT_EQ(without, expected);
}

// The digest that a checkpoint of CAVP's Monte Carlo tests ends with: of SHA-3, a chain of digests of digests; of
// the others, a chain in which each message is the three digests before it.
template <class Hash>
Bytes Checkpoint(const Bytes& seed, bool isSha3, Hash hash) {
    Bytes last[3] = {seed, seed, seed};
    for (int step = 0; step < 1000; ++step) {
        Bytes message = last[2];
        if (!isSha3) {
            message = last[0];
            message.insert(message.end(), last[1].begin(), last[1].end());
            message.insert(message.end(), last[2].begin(), last[2].end());
        }
        last[0] = last[1];
        last[1] = last[2];
        last[2] = helpers::FromHex(hash(message));
    }
    return last[2];
}

// Follows every chain to the first of its checkpoints, or to the last; between them the first three and the last
// are known.
void ExpectCheckpoints(int count) {
    row_tests::RowTexts texts;
    const std::vector<std::string> lines = helpers::VectorLines("sha_cavp_monte.txt");
    ASSERT_EQ(lines.size(), 8u);
    for (const std::string& line : lines) {
        std::istringstream fields(line);
        std::string function, seed, known[4];
        fields >> function >> seed >> known[0] >> known[1] >> known[2] >> known[3];
        Bytes digest = helpers::FromHex(seed);
        for (int i = 0; i < count; ++i) {
            digest = Checkpoint(digest, function.starts_with("SHA3"),
                                [&](const Bytes& message) { return texts.Of(function, message); });
            if (i < 3 || i == 99) {
                EXPECT_EQ(helpers::ToHex(digest), known[std::min(i, 3)]) << function << ", checkpoint " << i;
            }
        }
    }
}

TEST(PublishedVectors, MonteCarloChainsPassTheirFirstCheckpoint) {
    ExpectCheckpoints(1);
}

TEST(PublishedVectorsSlow, MonteCarloChainsPassAllCheckpoints) {
    ExpectCheckpoints(100);
}

} // namespace
