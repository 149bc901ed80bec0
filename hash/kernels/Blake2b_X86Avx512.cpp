// SPDX-License-Identifier: MIT
// BLAKE2b with AVX-512 in vectors of four words: a rotation is one instruction, also that by 63 bits, which ends the
// chain from one half round to the next. No vector is wider, because a wider one takes a third of the units away
// from all that are on their way.
#include "hash/kernels/Isa.h"

#define ISA_BLAKE2B ISA_AVX512
#include "hash/kernels/Blake2b_X86Rounds.h"

namespace fyrn::kernels {
namespace {

template <int bits>
ISA_AVX512 ALWAYS_INLINE __m256i Rotate(__m256i x) {
    return _mm256_ror_epi64(x, bits);
}

} // namespace

ISA_AVX512 void Blake2b_Compress_X86Avx512(Blake2bState& state, const std::uint8_t* blocks, std::size_t count,
                                           std::uint64_t added) {
    CompressBlocks(state, blocks, count, added);
}

} // namespace fyrn::kernels
