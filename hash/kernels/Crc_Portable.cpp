// SPDX-License-Identifier: MIT
// Sixteen bytes at a time: a CRC is linear, so the register after them is the xor of what each byte, the first
// eight met by the register, would have made of a zero register on its own. One table for each distance from the
// end gives that in one look-up, and the sixteen look-ups do not wait for one another.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Crc.h"

namespace fyrn::kernels {
namespace {

constexpr std::size_t stride = 16;

inline std::uint64_t ByteOf(std::uint64_t word, int index) {
    return word >> 8 * index & 0xff;
}

// What eight bytes have become when `distance` bytes follow them.
inline std::uint64_t EightBytes(const CrcTables& tables, int distance, std::uint64_t word) {
    std::uint64_t sum = 0;
#pragma GCC unroll 8
    for (int i = 0; i < 8; ++i)
        sum ^= tables.slices[distance + 7 - i][ByteOf(word, i)];
    return sum;
}

// One more power of x is one more step of the register, and eight of them are one zero byte.
inline std::uint64_t TimesX8(const CrcTables& tables, std::uint64_t power) {
    return tables.slices[0][power & 0xff] ^ power >> 8;
}

std::uint64_t XToThe7th(std::uint64_t polynomial) {
    std::uint64_t power = std::uint64_t{1} << 63;
    for (int i = 0; i < 7; ++i)
        power = (power >> 1) ^ ((power & 1) != 0 ? polynomial : 0);
    return power;
}

// The exponents wanted, 128 k + 127 and 128 k + 191, are all 7 more than a multiple of 64.
void ComputeFolds(CrcTables& tables) {
    const std::uint64_t polynomial =
        tables.slices[0][0x80]; // its one bit needs eight steps to leave the register
    std::uint64_t power = XToThe7th(polynomial);
    for (int exponent = 7; exponent <= 16 * 128 + 63; exponent += 8, power = TimesX8(tables, power)) {
        if (exponent % 128 == 127)
            tables.folds[exponent / 128][1] = power;
        else if (exponent % 128 == 63 && exponent > 128)
            tables.folds[exponent / 128 - 1][0] = power;
    }
}

} // namespace

void Crc_CompleteTables(CrcTables& tables) {
    ComputeFolds(tables);
    for (std::size_t k = 1; k < stride; ++k)
        for (std::size_t b = 0; b < 256; ++b) {
            const std::uint64_t before = tables.slices[k - 1][b];
            tables.slices[k][b] = tables.slices[0][before & 0xff] ^ before >> 8;
        }
}

std::uint64_t Crc_Bytes_Portable(const CrcTables& tables, std::uint64_t crc, const std::uint8_t* bytes,
                                 std::size_t count) {
    for (; count >= stride; count -= stride, bytes += stride)
        crc = EightBytes(tables, 8, LoadLittle<std::uint64_t>(bytes) ^ crc) ^
              EightBytes(tables, 0, LoadLittle<std::uint64_t>(bytes + 8));
    for (; count != 0; --count)
        crc = tables.slices[0][(crc ^ *bytes++) & 0xff] ^ crc >> 8;
    return crc;
}

} // namespace fyrn::kernels
