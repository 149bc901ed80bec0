// SPDX-License-Identifier: MIT
#include "tests/reference/LegacySums.h"

namespace reference {
namespace {

void ShiftInto(std::uint32_t& crc, std::uint64_t byte) {
    for (int bit = 7; bit >= 0; --bit) {
        const bool carry = (crc >> 31 ^ (byte >> bit & 1)) != 0;
        crc = crc << 1 ^ (carry ? 0x04c11db7 : 0);
    }
}

} // namespace

std::uint32_t Cksum(std::span<const std::uint8_t> message) {
    std::uint32_t crc = 0;
    for (const std::uint8_t byte : message)
        ShiftInto(crc, byte);
    for (std::uint64_t length = message.size(); length != 0; length >>= 8)
        ShiftInto(crc, length & 0xff);
    return ~crc;
}

std::uint16_t BsdSum(std::span<const std::uint8_t> message) {
    std::uint32_t sum = 0;
    for (const std::uint8_t byte : message)
        sum = ((sum >> 1) + ((sum & 1) << 15) + byte) & 0xffff;
    return static_cast<std::uint16_t>(sum);
}

std::uint16_t SysvSum(std::span<const std::uint8_t> message) {
    std::uint32_t sum = 0;
    for (const std::uint8_t byte : message)
        sum += byte;
    const std::uint32_t folded = sum % 0x10000 + sum / 0x10000;
    return static_cast<std::uint16_t>(folded % 0x10000 + folded / 0x10000);
}

} // namespace reference
