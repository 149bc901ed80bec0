// SPDX-License-Identifier: MIT
// Digests from publications and other implementations. The head of each file in tests/data says where they come from.
// The references are held to them as well.
#include "tests/hash/Functions.h"
#include "tests/helpers/KnownAnswers.h"
#include "tests/helpers/VectorLines.h"

#include <set>
#include <sstream>

namespace {

using hash_tests::AllFunctions;
using hash_tests::Name;
using helpers::Bytes;
using helpers::KnownAnswer;

constexpr std::size_t slowForReferences = 20'000; // bytes; the references take seconds for a million

TEST(PublishedVectors, EveryFunctionAndReferenceGivesTheirDigests) {
    for (const auto& [file, answers] : helpers::Publications())
        for (const auto& [name, message, digest] : answers) {
            const fyrn_function* const function = fyrn_function_find(name.c_str());
            ASSERT_NE(function, nullptr) << name;
            EXPECT_EQ(hash_tests::Digest(function, message), digest)
                << file << ", " << name << ", " << message.size() << " bytes";
            if (message.size() < slowForReferences) {
                EXPECT_EQ(hash_tests::Expected(function, message), digest)
                    << file << ", the reference of " << name << ", " << message.size() << " bytes";
            }
        }
}

// The shorter digests of Tiger are cut from the long one, and of SHAKE-512 and the small BLAKE2 nobody publishes any.
TEST(PublishedVectors, AreThereForAllOtherFunctions) {
    std::set<std::string> without;
    for (const fyrn_function* function : AllFunctions())
        without.insert(Name(function));
    for (const auto& [file, answers] : helpers::Publications())
        for (const KnownAnswer& answer : answers)
            without.erase(answer.function);
    without.erase("BLAKE3"); // below
    const std::set<std::string> expected = {"BLAKE2-128", "BLAKE2-160", "SHAKE-512", "TIGER1-128",
                                            "TIGER1-160", "TIGER2-128", "TIGER2-160"};
    EXPECT_EQ(without, expected) << "a new function needs published digests in tests/data/published";
}

// Of BLAKE3 131 bytes are known, for messages whose byte i is i modulo 251.
TEST(PublishedVectors, Blake3GivesItsAuthors) {
    const fyrn_function* const blake3 = fyrn_function_find("BLAKE3");
    ASSERT_NE(blake3, nullptr);
    const std::vector<std::string> lines = helpers::VectorLines("blake3.txt");
    ASSERT_GT(lines.size(), 10u);
    for (const std::string& line : lines) {
        std::istringstream fields(line);
        std::size_t length = 0;
        std::string digest;
        ASSERT_TRUE(fields >> length >> digest);
        Bytes message;
        for (std::size_t i = 0; i < length; ++i)
            message.push_back(static_cast<std::uint8_t>(i % 251));
        const hash_tests::Hash hash(fyrn_hash_new_sized(blake3, digest.size() / 2));
        hash_tests::Update(hash, message);
        EXPECT_EQ(hash_tests::Finish(hash), digest) << length << " bytes";
        EXPECT_EQ(helpers::ToHex(helpers::FunctionReference("BLAKE3", message, digest.size() / 2)), digest)
            << "the reference, " << length << " bytes";
    }
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
    const std::vector<std::string> lines = helpers::VectorLines("sha_cavp_monte.txt");
    ASSERT_EQ(lines.size(), 8u);
    for (const std::string& line : lines) {
        std::istringstream fields(line);
        std::string function, seed, known[4];
        fields >> function >> seed >> known[0] >> known[1] >> known[2] >> known[3];
        const fyrn_function* const found = fyrn_function_find(function.c_str());
        ASSERT_NE(found, nullptr) << function;
        Bytes digest = helpers::FromHex(seed);
        for (int i = 0; i < count; ++i) {
            digest = Checkpoint(digest, function.starts_with("SHA3"),
                                [&](const Bytes& message) { return hash_tests::Digest(found, message); });
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
