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

} // namespace fyrn::kernels
