// SPDX-License-Identifier: MIT
// Skein-1024 of 8 messages side by side, with AVX-512.
#include "hash/kernels/Lanes_X86Avx512.h"

#include "hash/kernels/Skein_X86Lanes.h"

namespace fyrn::kernels {

ISA_LANES void Skein1024_Lanes_X86Avx512x8(std::uint64_t* const chains[], std::uint64_t* const tweaks[],
                                           const std::uint8_t* const blocks[], std::size_t count,
                                           std::uint64_t added) {
    CompressBlocks<16>(chains, tweaks, blocks, count, added);
}

} // namespace fyrn::kernels
