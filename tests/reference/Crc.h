// SPDX-License-Identifier: MIT
// A right-shifting CRC, bit by bit.
#pragma once

#include <cstdint>
#include <span>

namespace reference {

// The register of `width` bits after the message, from the lowest bit of each byte to its highest.
std::uint64_t CrcRegister(unsigned int width, std::uint64_t polynomial, std::uint64_t start,
                          std::span<const std::uint8_t> message);

// The CRC whose start and final value are both `value`.
inline std::uint64_t Crc(unsigned int width, std::uint64_t polynomial, std::uint64_t value,
                         std::span<const std::uint8_t> message) {
    return CrcRegister(width, polynomial, value, message) ^ value;
}

} // namespace reference
