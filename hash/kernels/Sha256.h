// SPDX-License-Identifier: MIT
// SHA-256 compression (FIPS 180-4).
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Compresses `count` blocks of 64 bytes into the state H0..H7.
using Sha256Blocks = void(std::uint32_t state[8], const std::uint8_t* blocks, std::size_t count);

Sha256Blocks Sha256_Blocks_Portable;
Sha256Blocks Sha256_Blocks_X86Sha;

// Compresses `count` blocks of each of many messages, each into a state of its own.
using Sha256Lanes = void(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                         std::size_t count);

Sha256Lanes Sha256_Lanes_X86Avx512x16;
Sha256Lanes Sha256_Lanes_X86Avx2x8;
Sha256Lanes Sha256_Lanes_X86Shax2;

// The round constants: the first 32 bits of the fractional parts of the cube roots of the first 64 primes.
extern const std::uint32_t sha256RoundConstants[64];

} // namespace fyrn::kernels
