// SPDX-License-Identifier: MIT
// SHA-512 compression (FIPS 180-4), which SHA-384 shares.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Compresses `count` blocks of 128 bytes into the state H0..H7.
using Sha512Blocks = void(std::uint64_t state[8], const std::uint8_t* blocks, std::size_t count);

Sha512Blocks Sha512_Blocks_Portable;
Sha512Blocks Sha512_Blocks_X86Avx2;
Sha512Blocks Sha512_Blocks_X86Avx512;

// Compresses `count` blocks of each of many messages, each into a state of its own.
using Sha512Lanes = void(std::uint64_t* const states[], const std::uint8_t* const blocks[],
                         std::size_t count);

Sha512Lanes Sha512_Lanes_X86Avx512x8;
Sha512Lanes Sha512_Lanes_X86Avx2x4;

// The round constants: the first 64 bits of the fractional parts of the cube roots of the first 80 primes.
extern const std::uint64_t sha512RoundConstants[80];

} // namespace fyrn::kernels
