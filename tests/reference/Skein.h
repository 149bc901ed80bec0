// SPDX-License-Identifier: MIT
// Skein 1.3 as its authors write it down: the configuration block is processed at run time, and the words of
// Threefish live in arrays. Slow, for comparison only.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace reference {

// Threefish with a key of 4, 8 or 16 words.
std::vector<std::uint64_t> Threefish(const std::vector<std::uint64_t>& key, std::uint64_t tweak0,
                                     std::uint64_t tweak1, const std::vector<std::uint64_t>& plain);

// The chaining value that the configuration block leaves, for simple hashing
// without a key: state size in words, output length in bits.
std::vector<std::uint64_t> SkeinInitialValue(std::size_t words, std::uint64_t outputBits);

// Skein of a message. State of 32, 64 or 128 bytes; output of any length in bytes. The positions of
// its blocks count from `before`.
std::vector<std::uint8_t> Skein(std::span<const std::uint8_t> message, std::size_t stateBytes,
                                std::size_t outputBytes, std::uint64_t before = 0);

} // namespace reference
