// SPDX-License-Identifier: MIT
// The tables of Whirlpool, derived at compile time from the three mini-boxes of four bits.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace fyrn::kernels::whirlpool {

using SBox = std::array<std::uint8_t, 256>;
using Table = std::array<std::uint64_t, 256>;

using MiniBox = std::array<std::uint8_t, 16>;

// The exponential box, its inverse, and the random box.
inline constexpr MiniBox boxE = {1, 11, 9, 12, 13, 6, 15, 3, 14, 8, 7, 4, 10, 2, 5, 0};
inline constexpr MiniBox boxR = {7, 12, 11, 13, 14, 4, 9, 15, 6, 3, 8, 10, 2, 5, 1, 0};
inline constexpr MiniBox boxInverseE = [] {
    MiniBox inverse{};
    for (std::uint8_t i = 0; i < 16; ++i)
        inverse[boxE[i]] = i;
    return inverse;
}();

// The S-box: E and its inverse on the two nibbles, joined through R.
constexpr SBox DeriveSBox() {
    SBox box{};
    for (unsigned int x = 0; x < 256; ++x) {
        const unsigned int high = boxE[x >> 4];
        const unsigned int low = boxInverseE[x & 15];
        const unsigned int joint = boxR[high ^ low];
        box[x] = static_cast<std::uint8_t>(boxE[high ^ joint] << 4 | boxInverseE[low ^ joint]);
    }
    return box;
}

// The product in GF(2^8) modulo x^8 + x^4 + x^3 + x^2 + 1.
constexpr std::uint8_t Multiply(unsigned int value, unsigned int factor) {
    unsigned int product = 0;
    for (; factor != 0; factor >>= 1) {
        if ((factor & 1) != 0)
            product ^= value;
        value <<= 1;
        if ((value & 0x100) != 0)
            value ^= 0x11d;
    }
    return static_cast<std::uint8_t>(product);
}

// Substitution and diffusion of a byte in one look-up: entry x of table t is row t of the circulant matrix
// of 1, 1, 4, 1, 8, 5, 2, 9, times the S-box entry of x.
constexpr std::array<Table, 8> DeriveTables() {
    constexpr unsigned int factors[8] = {1, 1, 4, 1, 8, 5, 2, 9};
    constexpr SBox box = DeriveSBox();
    std::array<Table, 8> tables{};
    for (unsigned int x = 0; x < 256; ++x) {
        std::uint64_t row = 0;
        for (const unsigned int factor : factors)
            row = row << 8 | Multiply(box[x], factor);
        for (int t = 0; t < 8; ++t)
            tables[static_cast<unsigned int>(t)][x] = std::rotr(row, 8 * t);
    }
    return tables;
}

// The ten round constants: the S-box from its start, eight bytes a round, added to the first row of the key.
constexpr std::array<std::uint64_t, 10> DeriveRoundConstants() {
    constexpr SBox box = DeriveSBox();
    std::array<std::uint64_t, 10> constants{};
    for (unsigned int i = 0; i < 80; ++i)
        constants[i / 8] = constants[i / 8] << 8 | box[i];
    return constants;
}

} // namespace fyrn::kernels::whirlpool
