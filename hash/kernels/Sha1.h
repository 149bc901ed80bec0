// SPDX-License-Identifier: MIT
// SHA-1 compression (FIPS 180-4).
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Compresses `count` blocks of 64 bytes into the state H0..H4.
using Sha1Blocks = void(std::uint32_t state[5], const std::uint8_t* blocks, std::size_t count);

Sha1Blocks Sha1_Blocks_Portable;
Sha1Blocks Sha1_Blocks_X86Sha;

// Compresses `count` blocks of each of many messages, each into a state of its own.
using Sha1Lanes = void(std::uint32_t* const states[], const std::uint8_t* const blocks[], std::size_t count);

Sha1Lanes Sha1_Lanes_X86Avx512x16;
Sha1Lanes Sha1_Lanes_X86Avx2x8;
Sha1Lanes Sha1_Lanes_X86Shax2;

} // namespace fyrn::kernels
