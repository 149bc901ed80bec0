// SPDX-License-Identifier: MIT
// Skein-1024 of 4 messages side by side, with AVX2.
#include "hash/kernels/Lanes_X86Avx2.h"

#include "hash/kernels/Skein_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Skein1024_Lanes_X86Avx2x4(std::uint64_t* const chains[], std::uint64_t* const tweaks[],
                                         const std::uint8_t* const blocks[], std::size_t count,
                                         std::uint64_t added) {
    CompressBlocks<16>(chains, tweaks, blocks, count, added);
}

} // namespace fyrn::kernels
