// SPDX-License-Identifier: MIT
// BLAKE2b of 8 messages side by side, with AVX-512.
#include "hash/kernels/Lanes_X86Avx512.h"

#include "hash/kernels/Blake2b_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Blake2b_Lanes_X86Avx512x8(Blake2bState* const states[], const std::uint8_t* const blocks[],
                                         std::size_t count, std::uint64_t added) {
    CompressBlocks(states, blocks, count, added);
}

} // namespace fyrn::kernels
