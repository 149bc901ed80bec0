// SPDX-License-Identifier: MIT
// MD4 compression (RFC 1320).
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Compresses `count` blocks of 64 bytes into the state A, B, C, D.
using Md4Blocks = void(std::uint32_t state[4], const std::uint8_t* blocks, std::size_t count);

Md4Blocks Md4_Blocks_Portable;
Md4Blocks Md4_Blocks_X86Avx512;

// Compresses `count` blocks of each of many messages, each into a state of its own.
using Md4Lanes = void(std::uint32_t* const states[], const std::uint8_t* const blocks[], std::size_t count);

Md4Lanes Md4_Lanes_X86Avx512x32;
Md4Lanes Md4_Lanes_X86Avx512x16;
Md4Lanes Md4_Lanes_X86Avx2x16;
Md4Lanes Md4_Lanes_X86Avx2x8;

} // namespace fyrn::kernels
