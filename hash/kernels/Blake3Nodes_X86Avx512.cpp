// SPDX-License-Identifier: MIT
// BLAKE3's nodes side by side, with AVX-512.
#include "hash/kernels/Lanes_X86Avx512.h"

#include "hash/kernels/Blake3Nodes_X86.h"

namespace fyrn::kernels {

ISA_LANES void Blake3_Nodes_X86Avx512(std::uint8_t* values, const std::uint8_t* nodes, std::size_t count,
                                      Blake3Level level, std::uint64_t counter) {
    CompressLevel(values, nodes, count, level, counter);
}

} // namespace fyrn::kernels
