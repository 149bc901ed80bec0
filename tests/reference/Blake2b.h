// SPDX-License-Identifier: MIT
// BLAKE2b as RFC 7693 writes it down, with arrays and loops. Slow, for comparison only.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace reference {

// A count of bytes of 128 bits.
struct Blake2bCounter {
    std::uint64_t low = 0;
    std::uint64_t high = 0;

    void Add(std::uint64_t bytes);
};

// The compression function F.
void Blake2bCompress(std::array<std::uint64_t, 8>& h, std::span<const std::uint8_t, 128> block,
                     Blake2bCounter counter, bool last);

// BLAKE2b of a message, with a digest of 1 to 64 bytes and a key of 0 to 64. The counter starts at `counter`
// instead of 0, which stands for a message whose earlier blocks have left the chaining value as it is.
std::vector<std::uint8_t> Blake2b(std::span<const std::uint8_t> message, std::size_t digestLength,
                                  std::span<const std::uint8_t> key = {}, Blake2bCounter counter = {});

} // namespace reference
