// SPDX-License-Identifier: MIT
// SHA-1 of 16 messages side by side, with AVX-512.
#include "hash/kernels/Lanes_X86Avx512.h"
#include "hash/kernels/Sha1_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Sha1_Lanes_X86Avx512x16(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                       std::size_t count) {
    CompressBlocks(states, blocks, count);
}

} // namespace fyrn::kernels
