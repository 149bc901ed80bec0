// SPDX-License-Identifier: MIT
// MD4 of 16 or 8 messages side by side, with AVX2.
#include "hash/kernels/Lanes_X86Avx2.h"
#include "hash/kernels/Md4_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Md4_Lanes_X86Avx2x16(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                    std::size_t count) {
    CompressBlocks<Pair<Words32>>(states, blocks, count);
}

ISA_LANES void Md4_Lanes_X86Avx2x8(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                   std::size_t count) {
    CompressBlocks<Words32>(states, blocks, count);
}

} // namespace fyrn::kernels
