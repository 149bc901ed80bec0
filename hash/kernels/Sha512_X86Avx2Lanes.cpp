// SPDX-License-Identifier: MIT
// SHA-512 of 4 messages side by side, with AVX2.
#include "hash/kernels/Lanes_X86Avx2.h"
#include "hash/kernels/Sha512_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Sha512_Lanes_X86Avx2x4(std::uint64_t* const states[], const std::uint8_t* const blocks[],
                                      std::size_t count) {
    CompressBlocks(states, blocks, count);
}

} // namespace fyrn::kernels
