// SPDX-License-Identifier: MIT
#include "tests/reference/Crc.h"

#include <bitset>

namespace reference {

std::uint64_t CrcRegister(unsigned int width, std::uint64_t polynomial, std::uint64_t start,
                          std::span<const std::uint8_t> message) {
    std::bitset<64> bits(start);
    const std::bitset<64> taps(polynomial);
    for (const std::uint8_t byte : message)
        for (unsigned int i = 0; i < 8; ++i) {
            const bool out = bits[0] != ((byte >> i & 1) != 0);
            bits >>= 1;
            if (out)
                bits ^= taps;
        }
    const std::bitset<64> mask = ~std::bitset<64>() >> (64 - width);
    return (bits & mask).to_ullong();
}

} // namespace reference
