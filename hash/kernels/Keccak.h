// SPDX-License-Identifier: MIT
// Keccak-f[1600], the permutation with 24 rounds (FIPS 202), as the absorbing step of a sponge.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// For each of `count` blocks: adds its `lanes` (0..25) little-endian words to the first lanes of the state,
// then permutes the state. With 0 lanes this is the bare permutation, and `blocks` may be null. Lane x + 5y
// of the state is the word at column x and row y.
using KeccakBlocks = void(std::uint64_t state[25], const std::uint8_t* blocks, std::size_t lanes,
                          std::size_t count);

KeccakBlocks Keccak_Blocks_Portable;
KeccakBlocks Keccak_Blocks_X86Bmi;
KeccakBlocks Keccak_Blocks_X86Avx512;

// The same for many messages, each with a state of its own, and blocks of `words` (0..25) words.
using KeccakLanes = void(std::uint64_t* const states[], const std::uint8_t* const blocks[], std::size_t words,
                         std::size_t count);

KeccakLanes Keccak_Lanes_X86Avx512x8;
KeccakLanes Keccak_Lanes_X86Avx2x4;

} // namespace fyrn::kernels
