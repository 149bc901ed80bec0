// SPDX-License-Identifier: MIT
// Digests from publications and other implementations. The head of each file in tests/data says where they come from. The
// references are held to them as well.
#include "tests/hash/Functions.h"
#include "tests/helpers/KnownAnswers.h"
#include "tests/helpers/VectorLines.h"

#include <set>
#include <sstream>

namespace {

using hash_tests::AllFunctions;
using hash_tests::Name;
using helpers::KnownAnswer;

constexpr const char* files[] = {
    "blake2b.txt",      "crc_check.txt",          "keccak_kat.txt",
    "md4_rfc1320.txt",  "md5_rfc1321.txt",        "md6.txt",
    "ripemd160.txt",    "sha3_cavp.txt",          "sha_cavp.txt",
    "sha_examples.txt", "sha_truncated_cavp.txt", "skein_golden_kat.txt",
    "sm3.txt",          "sums_coreutils.txt",     "tiger2.txt",
    "tiger_nessie.txt", "whirlpool_iso.txt",
};

constexpr std::size_t slowForReferences = 20'000; // bytes; the references take seconds for a million

TEST(PublishedVectors, EveryFunctionAndReferenceGivesTheirDigests) {
    for (const char* file : files)
        for (const auto& [name, message, digest] : helpers::KnownAnswers(helpers::VectorLines(file))) {
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
    for (const char* file : files)
        for (const KnownAnswer& answer : helpers::KnownAnswers(helpers::VectorLines(file)))
            without.erase(answer.function);
    without.erase("BLAKE3"); // below
    const std::set<std::string> expected = {"BLAKE2-128", "BLAKE2-160", "SHAKE-512", "TIGER1-128",
                                            "TIGER1-160", "TIGER2-128", "TIGER2-160"};
    EXPECT_EQ(without, expected) << "a new function needs published digests in tests/data";
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
        hash_tests::Bytes message;
        for (std::size_t i = 0; i < length; ++i)
            message.push_back(static_cast<std::uint8_t>(i % 251));
        const hash_tests::Hash hash(fyrn_hash_new_sized(blake3, digest.size() / 2));
        hash_tests::Update(hash, message);
        EXPECT_EQ(hash_tests::Finish(hash), digest) << length << " bytes";
        EXPECT_EQ(helpers::ToHex(helpers::FunctionReference("BLAKE3", message, digest.size() / 2)), digest)
            << "the reference, " << length << " bytes";
    }
}

} // namespace
