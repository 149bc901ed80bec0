// SPDX-License-Identifier: MIT
// Whirlpool compression (ISO/IEC 10118-3, the final version of 2003).
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Compresses `count` blocks of 64 bytes into the state, whose
// words are the rows of the matrix, first byte highest.
using WhirlpoolBlocks = void(std::uint64_t state[8], const std::uint8_t* blocks, std::size_t count);

WhirlpoolBlocks Whirlpool_Blocks_Portable;
WhirlpoolBlocks Whirlpool_Blocks_X86Avx2;
WhirlpoolBlocks Whirlpool_Blocks_X86Avx512;

} // namespace fyrn::kernels
