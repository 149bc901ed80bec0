// SPDX-License-Identifier: MIT
// MD6 as its authors' report describes it (Rivest et al., "The MD6 hash function: a proposal to NIST for
// SHA-3", 2008, chapter 2), with L = 64: slow, and with whole levels of the tree as arrays. The report itself
// was not at hand; node-md6 confirms the digests (tests/data/published/md6.txt).
#pragma once

#include <cstdint>
#include <vector>

namespace reference {

struct Md6Parameters {
    int digestBits = 256;
    std::vector<std::uint8_t> key = {};
    int rounds = -1; // negative: the standard's number
};

// The digest of the first `bitCount` bits of a message, most significant bit of a byte first, in
// (digestBits + 7) / 8 bytes.
std::vector<std::uint8_t> Md6(const std::vector<std::uint8_t>& message, std::uint64_t bitCount,
                              const Md6Parameters& parameters);

// The compression function: 89 words to 16.
std::vector<std::uint64_t> Md6Compress(const std::vector<std::uint64_t>& input, int rounds);

// The constant Q: the first 960 bits of the fractional part of the square root of 6.
std::vector<std::uint64_t> Md6Q();

} // namespace reference
