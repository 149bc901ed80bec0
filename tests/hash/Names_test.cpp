// SPDX-License-Identifier: MIT
#include "hash/FunctionTable.h"
#include "tests/hash/Functions.h"
#include "tests/helpers/CpuLevel.h"

#include <cctype>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace {

using hash_tests::AllFunctions;
using hash_tests::Name;

// Name, tag and aliases.
std::vector<std::string> NamesOf(const fyrn_function* function) {
    std::vector<std::string> names = {fyrn_function_name(function), fyrn_function_tag(function)};
    std::istringstream aliases(function->aliases);
    for (std::string alias; aliases >> alias;)
        names.push_back(alias);
    return names;
}

// What is left of a name when nothing but letters and digits counts.
std::string Bare(const std::string& name) {
    std::string bare;
    for (const char c : name)
        if (std::string("-_/ ").find(c) == std::string::npos)
            bare += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return bare;
}

std::string SpacedOut(const std::string& name) {
    std::string spaced = " ";
    for (const char c : name)
        spaced += std::string(1, static_cast<char>(std::toupper(static_cast<unsigned char>(c)))) + "_/ -";
    return spaced;
}

TEST(Names, NoTwoFunctionsAnswerToOneName) {
    std::map<std::string, std::string> owners;
    for (const fyrn_function* function : AllFunctions())
        for (const std::string& name : NamesOf(function)) {
            const auto [owner, isNew] = owners.try_emplace(Bare(name), Name(function));
            EXPECT_EQ(owner->second, Name(function)) << "both are called " << name;
        }
}

TEST(Names, EverySpellingOfEveryNameFindsItsFunction) {
    for (const fyrn_function* function : AllFunctions())
        for (const std::string& name : NamesOf(function)) {
            EXPECT_NE(Bare(name), "") << Name(function);
            for (const std::string& spelling : {name, Bare(name), SpacedOut(name)})
                EXPECT_EQ(fyrn_function_find(spelling.c_str()), function) << spelling;
            EXPECT_NE(fyrn_function_find((name + "x").c_str()), function);
            EXPECT_NE(fyrn_function_find(Bare(name).substr(1).c_str()), function) << name;
        }
}

// As other tools and lists write them.
TEST(Names, UsualNamesFindTheirFunctions) {
    const std::map<std::string, std::string> usual = {
        {"md5", "MD5"},
        {"sha1", "SHA1"},
        {"SHA-1", "SHA1"},
        {"sha224", "SHA2-224"},
        {"sha256", "SHA2-256"},
        {"SHA-256", "SHA2-256"},
        {"SHA2-256", "SHA2-256"},
        {"sha384", "SHA2-384"},
        {"sha512", "SHA2-512"},
        {"SHA512-224", "SHA2-512/224"},
        {"SHA512/256", "SHA2-512/256"},
        {"512224", "SHA2-512/224"},
        {"512256", "SHA2-512/256"},
        {"sha3-256", "SHA3-256"},
        {"SHA3_512", "SHA3-512"},
        {"SHAKE128", "SHAKE-128"},
        {"shake256", "SHAKE-256"},
        {"blake2b", "BLAKE2-512"},
        {"BLAKE2B512", "BLAKE2-512"},
        {"BLAKE2b-256", "BLAKE2-256"},
        {"crc32", "CRC-32"},
        {"crc32b", "CRC-32"},
        {"crc32c", "CRC-32C"},
        {"CRC64-NVME", "CRC-64/NVME"},
        {"CRC16-USB", "CRC-16"},
        {"CRC64-ISO", "CRC-64"},
        {"tiger", "TIGER1-192"},
        {"tiger2", "TIGER2-192"},
        {"whirlpool", "WHIRLPOOL"},
        {"crc", "CKSUM"},
        {"b3", "BLAKE3"},
        {"bsd", "SUM-BSD"},
        {"sysv", "SUM-SYSV"},
        {"sm3", "SM3"},
        {"rmd160", "RIPEMD-160"},
        {"ripemd160", "RIPEMD-160"},
    };
    for (const auto& [name, canonical] : usual) {
        const fyrn_function* const found = fyrn_function_find(name.c_str());
        ASSERT_NE(found, nullptr) << name;
        EXPECT_EQ(Name(found), canonical) << name;
    }
}

TEST(Names, NothingElseIsFound) {
    for (const char* name : {"", " ", "-", "/_- ", "sha", "sha-", "md", "sha257", "sha25", "blake2s",
                             "SHA2-256 SHA2-512", "blake2b-512 blake2", "sha\xc3\xa9"})
        EXPECT_EQ(fyrn_function_find(name), nullptr) << name;
    EXPECT_EQ(fyrn_function_find(nullptr), nullptr);
}

TEST(Names, ThereIsNoFunctionPastTheEnd) {
    EXPECT_GE(fyrn_function_count(), 49u);
    EXPECT_EQ(fyrn_function_at(fyrn_function_count()), nullptr);
    EXPECT_EQ(fyrn_function_at(SIZE_MAX), nullptr);
}

TEST(Names, SizesAreThoseOfTheObjects) {
    for (const fyrn_function* function : AllFunctions()) {
        const hash_tests::Hash hash = hash_tests::New(function);
        ASSERT_NE(hash, nullptr);
        EXPECT_EQ(fyrn_hash_digest_size(hash.get()), fyrn_function_digest_size(function)) << Name(function);
        EXPECT_GE(fyrn_function_block_size(function), 1u) << Name(function);
    }
}

// Of sponges the rate, of MD6 a node, of sums one byte.
TEST(Names, BlocksHaveTheirPublishedSizes) {
    const std::map<std::string, std::size_t> sizes = {
        {"BLAKE2-512", 128}, {"BLAKE3", 64},      {"CRC-32", 1},      {"CKSUM", 1},      {"SUM-BSD", 1},
        {"SUM-SYSV", 1},     {"KECCAK-224", 144}, {"MD4", 64},        {"MD5", 64},       {"MD6-256", 512},
        {"RIPEMD-160", 64},  {"SHA1", 64},        {"SHA2-224", 64},   {"SHA2-256", 64},  {"SHA2-384", 128},
        {"SHA2-512", 128},   {"SHA3-256", 136},   {"SHAKE-128", 168}, {"SM3", 64},       {"SKEIN-256", 32},
        {"SKEIN-512", 64},   {"SKEIN-1024", 128}, {"TIGER2-192", 64}, {"WHIRLPOOL", 64},
    };
    for (const auto& [name, size] : sizes)
        EXPECT_EQ(fyrn_function_block_size(fyrn_function_find(name.c_str())), size) << name;
}

// Every function says which kernel it runs on; without any feature of the processor all of them run everywhere.
TEST(Names, KernelsAreNamed) {
    for (const fyrn_function* function : AllFunctions()) {
        const std::string kernel = fyrn_function_kernel(function);
        EXPECT_NE(kernel, "") << Name(function);
        if (helpers::CpuLevel() == "none") {
            EXPECT_EQ(kernel, "portable") << Name(function);
        }
    }
}

TEST(Names, TheVersionIsTheProjects) {
    std::ifstream file(FYRN_SOURCE_DIR "/VERSION");
    std::string version;
    ASSERT_TRUE(std::getline(file, version));
    EXPECT_EQ(fyrn_version(), version);
}

} // namespace
