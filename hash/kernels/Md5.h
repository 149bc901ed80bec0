// SPDX-License-Identifier: MIT
// MD5 compression (RFC 1321).
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Compresses `count` blocks of 64 bytes into the state A, B, C, D.
using Md5Blocks = void(std::uint32_t state[4], const std::uint8_t* blocks, std::size_t count);

Md5Blocks Md5_Blocks_Portable;
Md5Blocks Md5_Blocks_X86Avx512;

} // namespace fyrn::kernels
