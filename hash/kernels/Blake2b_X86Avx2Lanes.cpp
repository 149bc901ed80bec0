// SPDX-License-Identifier: MIT
// BLAKE2b of 4 messages side by side, with AVX2.
#include "hash/kernels/Lanes_X86Avx2.h"

#include "hash/kernels/Blake2b_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Blake2b_Lanes_X86Avx2x4(Blake2bState* const states[], const std::uint8_t* const blocks[],
                                       std::size_t count, std::uint64_t added) {
    CompressBlocks(states, blocks, count, added);
}

} // namespace fyrn::kernels
