// SPDX-License-Identifier: MIT
#include "tests/oracle/Libgcrypt.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <string>

namespace oracle {
namespace {

// The library is set up by the first question for its version.
void SetUp() {
    if (gcry_check_version(nullptr) == nullptr)
        throw std::runtime_error("libgcrypt cannot be used");
    gcry_control(GCRYCTL_DISABLE_SECMEM, 0);
    gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
}

void Require(gcry_error_t error) {
    if (error != 0)
        throw std::runtime_error(gcry_strerror(error));
}

// As libgcrypt spells it: "SHA512/224" is SHA512_224 there, "BLAKE2b-256" BLAKE2B_256, "RIPEMD-160" RIPEMD160.
std::optional<int> AlgorithmCalled(std::string name) {
    std::replace(name.begin(), name.end(), '/', '_');
    std::string underlined = name;
    std::replace(underlined.begin(), underlined.end(), '-', '_');
    std::string joined = name;
    std::erase(joined, '-');
    for (const std::string& spelling : {name, underlined, joined})
        if (const int algorithm = gcry_md_map_name(spelling.c_str()); algorithm != 0)
            return algorithm;
    return std::nullopt;
}

// Those whose names tell nothing: Tiger in the order of bytes that its authors gave it later, whose shorter digests are
// the first bytes of the long one, and the longest BLAKE2b.
const std::map<std::string, int> otherNames = {
    {"BLAKE2-512", GCRY_MD_BLAKE2B_512}, {"TIGER1-128", GCRY_MD_TIGER1}, {"TIGER1-160", GCRY_MD_TIGER1},
    {"TIGER1-192", GCRY_MD_TIGER1},      {"TIGER2-128", GCRY_MD_TIGER2}, {"TIGER2-160", GCRY_MD_TIGER2},
    {"TIGER2-192", GCRY_MD_TIGER2},
};

} // namespace

helpers::Bytes Digest(int algorithm, std::span<const std::uint8_t> message, std::size_t length) {
    if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P) == 0)
        SetUp();
    gcry_md_hd_t handle;
    Require(gcry_md_open(&handle, algorithm, 0));
    gcry_md_write(handle, message.data(), message.size());
    helpers::Bytes digest(length != 0 ? length : gcry_md_get_algo_dlen(algorithm));
    if (length != 0)
        Require(gcry_md_extract(handle, algorithm, digest.data(), digest.size()));
    else
        std::copy_n(gcry_md_read(handle, algorithm), digest.size(), digest.data());
    gcry_md_close(handle);
    return digest;
}

std::optional<int> AlgorithmOf(const fyrn_function* function) {
    const auto other = otherNames.find(fyrn_function_name(function));
    if (other != otherNames.end())
        return other->second;
    const auto byName = AlgorithmCalled(fyrn_function_name(function));
    return byName ? byName : AlgorithmCalled(fyrn_function_tag(function));
}

helpers::Bytes Digest(const fyrn_function* function, std::span<const std::uint8_t> message) {
    const std::optional<int> algorithm = AlgorithmOf(function);
    if (!algorithm)
        throw std::invalid_argument("libgcrypt does not have the function");
    const std::size_t size = fyrn_function_digest_size(function);
    const bool isOpen = gcry_md_get_algo_dlen(*algorithm) == 0; // of any length
    helpers::Bytes digest = Digest(*algorithm, message, isOpen ? size : 0);
    digest.resize(size);
    return digest;
}

} // namespace oracle
