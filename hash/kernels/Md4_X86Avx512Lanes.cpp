// SPDX-License-Identifier: MIT
// MD4 of 32 or 16 messages side by side, with AVX-512.
#include "hash/kernels/Lanes_X86Avx512.h"
#include "hash/kernels/Md4_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Md4_Lanes_X86Avx512x32(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                      std::size_t count) {
    CompressBlocks<Pair<Words32>>(states, blocks, count);
}

ISA_LANES void Md4_Lanes_X86Avx512x16(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                      std::size_t count) {
    CompressBlocks<Words32>(states, blocks, count);
}

} // namespace fyrn::kernels
