// SPDX-License-Identifier: MIT
#include "tests/reference/Crc.h"

namespace reference {

std::uint64_t CrcRegister(unsigned int width, std::uint64_t polynomial, std::uint64_t start,
                          std::span<const std::uint8_t> message) {
    std::uint64_t crc = start;
    for (const std::uint8_t byte : message)
        for (int bit = 0; bit < 8; ++bit) {
            const bool out = ((crc ^ byte >> bit) & 1) != 0;
            crc >>= 1;
            if (out)
                crc ^= polynomial;
        }
    return crc & ~std::uint64_t{0} >> (64 - width);
}

} // namespace reference
