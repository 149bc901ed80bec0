// SPDX-License-Identifier: MIT
// Keccak-f[1600] of 8 messages side by side, with AVX-512.
#include "hash/kernels/Lanes_X86Avx512.h"

#include "hash/kernels/Keccak_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Keccak_Lanes_X86Avx512x8(std::uint64_t* const states[], const std::uint8_t* const blocks[],
                                        std::size_t words, std::size_t count) {
    AbsorbBlocks(states, blocks, words, count);
}

} // namespace fyrn::kernels
