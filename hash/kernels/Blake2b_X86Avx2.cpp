// SPDX-License-Identifier: MIT
// BLAKE2b with AVX2. Whole bytes are rotated by a shuffle.
#include "hash/kernels/Isa.h"

#define ISA_BLAKE2B ISA_AVX2
#include "hash/kernels/Blake2b_X86Rounds.h"

namespace fyrn::kernels {
namespace {

template <int bits>
ISA_AVX2 ALWAYS_INLINE __m256i Rotate(__m256i x) {
    if constexpr (bits == 32)
        return _mm256_shuffle_epi32(x, 0xb1);
    else if constexpr (bits == 24)
        return _mm256_shuffle_epi8(x, _mm256_setr_epi64x(0x0201000706050403, 0x0a09080f0e0d0c0b,
                                                         0x0201000706050403, 0x0a09080f0e0d0c0b));
    else if constexpr (bits == 16)
        return _mm256_shuffle_epi8(x, _mm256_setr_epi64x(0x0100070605040302, 0x09080f0e0d0c0b0a,
                                                         0x0100070605040302, 0x09080f0e0d0c0b0a));
    else
        return _mm256_xor_si256(_mm256_srli_epi64(x, 63), _mm256_add_epi64(x, x));
}

} // namespace

ISA_AVX2 void Blake2b_Compress_X86Avx2(Blake2bState& state, const std::uint8_t* blocks, std::size_t count,
                                       std::uint64_t added) {
    CompressBlocks(state, blocks, count, added);
}

} // namespace fyrn::kernels
