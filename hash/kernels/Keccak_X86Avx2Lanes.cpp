// SPDX-License-Identifier: MIT
// Keccak-f[1600] of 4 messages side by side, with AVX2.
#include "hash/kernels/Lanes_X86Avx2.h"

#include "hash/kernels/Keccak_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Keccak_Lanes_X86Avx2x4(std::uint64_t* const states[], const std::uint8_t* const blocks[],
                                      std::size_t words, std::size_t count) {
    AbsorbBlocks(states, blocks, words, count);
}

} // namespace fyrn::kernels
