// SPDX-License-Identifier: MIT
// SHA-512 with AVX2 and BMI2.
#define ISA_SHA512 ISA_AVX2_BMI

#define SCHEDULE_1(m0, m1, m2, m3)                                                                           \
    x = _mm256_permute2x128_si256(m0, m1, 0x21), y = _mm256_permute2x128_si256(m2, m3, 0x21),                \
    x = _mm256_alignr_epi8(x, m0, 8), y = _mm256_alignr_epi8(y, m2, 8), z = _mm256_srli_epi64(x, 1),         \
    w = _mm256_slli_epi64(x, 63), m0 = _mm256_add_epi64(m0, y), y = _mm256_shuffle_epi8(x, rotateBy8),       \
    z = _mm256_xor_si256(z, w)
#define SCHEDULE_2(m0, m1, m2, m3)                                                                           \
    x = _mm256_srli_epi64(x, 7), z = _mm256_xor_si256(z, y), l = _mm256_extracti128_si256(m3, 1),            \
    z = _mm256_xor_si256(z, x), j = _mm_srli_epi64(l, 19), k = _mm_slli_epi64(l, 45),                        \
    m0 = _mm256_add_epi64(m0, z), j = _mm_xor_si128(j, k), k = _mm_srli_epi64(l, 61)
#define SCHEDULE_3(m0, m1, m2, m3)                                                                           \
    n = _mm_slli_epi64(l, 3), l = _mm_srli_epi64(l, 6), j = _mm_xor_si128(j, k), l = _mm_xor_si128(l, n),    \
    j = _mm_xor_si128(j, l), low = _mm_add_epi64(_mm256_castsi256_si128(m0), j),                             \
    j = _mm_srli_epi64(low, 19), k = _mm_slli_epi64(low, 45), l = _mm256_extracti128_si256(m0, 1)
#define SCHEDULE_4(m0, m1, m2, m3)                                                                           \
    j = _mm_xor_si128(j, k), k = _mm_srli_epi64(low, 61), n = _mm_slli_epi64(low, 3),                        \
    j = _mm_xor_si128(j, k), k = _mm_srli_epi64(low, 6), k = _mm_xor_si128(k, n), j = _mm_xor_si128(j, k),   \
    l = _mm_add_epi64(l, j), m0 = _mm256_set_m128i(l, low)

#include "hash/kernels/Sha512_X86Rounds.h"

namespace fyrn::kernels {

ISA_AVX2_BMI void Sha512_Blocks_X86Avx2(std::uint64_t state[8], const std::uint8_t* blocks,
                                        std::size_t count) {
    CompressBlocks(state, blocks, count);
}

} // namespace fyrn::kernels
