// SPDX-License-Identifier: MIT
// SHA-512 with AVX-512 and BMI2: rotations and sums of three make the schedule shorter by a third. No vector is wider
// than 256 bits, since wider ones take a third of the units away from all that are on their way. Where its statements
// stand between those of the rounds was chosen among seventy ways on a Zen 4 core.
#define ISA_SHA512 ISA_AVX512_BMI

#define SCHEDULE_1(m0, m1, m2, m3)                                                                           \
    x = _mm256_alignr_epi64(m1, m0, 1), y = _mm256_alignr_epi64(m3, m2, 1), z = _mm256_ror_epi64(x, 1), ,    \
    w = _mm256_ror_epi64(x, 8), x = _mm256_srli_epi64(x, 7), , m0 = _mm256_add_epi64(m0, y),                 \
    z = _mm256_ternarylogic_epi64(z, w, x, 0x96)
#define SCHEDULE_2(m0, m1, m2, m3)                                                                           \
    l = _mm256_extracti128_si256(m3, 1), m0 = _mm256_add_epi64(m0, z), , j = _mm_ror_epi64(l, 19), ,         \
    k = _mm_ror_epi64(l, 61), , l = _mm_srli_epi64(l, 6), j = _mm_ternarylogic_epi64(j, k, l, 0x96)
#define SCHEDULE_3(m0, m1, m2, m3)                                                                           \
    , low = _mm_add_epi64(_mm256_castsi256_si128(m0), j), , j = _mm_ror_epi64(low, 19), ,                    \
      k = _mm_ror_epi64(low, 61), , , n = _mm_srli_epi64(low, 6)
#define SCHEDULE_4(m0, m1, m2, m3)                                                                           \
    l = _mm256_extracti128_si256(m0, 1), j = _mm_ternarylogic_epi64(j, k, n, 0x96), ,                        \
    l = _mm_add_epi64(l, j), , , m0 = _mm256_set_m128i(l, low), ,

#include "hash/kernels/Sha512_X86Rounds.h"

namespace fyrn::kernels {

ISA_AVX512_BMI void Sha512_Blocks_X86Avx512(std::uint64_t state[8], const std::uint8_t* blocks,
                                            std::size_t count) {
    CompressBlocks(state, blocks, count);
}

} // namespace fyrn::kernels
