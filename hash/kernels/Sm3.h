// SPDX-License-Identifier: MIT
// SM3 compression (GB/T 32905-2016, ISO/IEC 10118-3:2018).
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Compresses `count` blocks of 64 bytes into the state A..H.
using Sm3Blocks = void(std::uint32_t state[8], const std::uint8_t* blocks, std::size_t count);

Sm3Blocks Sm3_Blocks_Portable;
Sm3Blocks Sm3_Blocks_X86Avx2;
Sm3Blocks Sm3_Blocks_X86Bmi;

} // namespace fyrn::kernels
