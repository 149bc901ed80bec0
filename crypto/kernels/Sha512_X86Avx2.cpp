// SPDX-License-Identifier: MIT
// SHA-512 with rotations that leave their source alone (BMI2) and the message schedule in vectors: four words of the
// schedule are made in the time of four rounds, which add them, with their constants, from memory.
#include "crypto/kernels/Isa.h"
#include "crypto/kernels/Sha512.h"

#include <immintrin.h>

#include <bit>

namespace kernels {
namespace {

using Word = std::uint64_t;
using Words = __m256i; // four words of the schedule

ISA_AVX2_BMI ALWAYS_INLINE Words LoadWords(const std::uint8_t* bytes) {
    const Words bigEndian =
        _mm256_broadcastsi128_si256(_mm_set_epi64x(0x08090a0b0c0d0e0f, 0x0001020304050607));
    return _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const Words*>(bytes)), bigEndian);
}

// Words 1..4 of the eight in `low` and `high`.
ISA_AVX2_BMI ALWAYS_INLINE Words ShiftByOne(Words low, Words high) {
    return _mm256_alignr_epi8(_mm256_permute2x128_si256(low, high, 0x21), low, 8);
}

ISA_AVX2_BMI ALWAYS_INLINE Words SmallSigma0(Words x) {
    const Words rotateBy8 =
        _mm256_broadcastsi128_si256(_mm_set_epi64x(0x080f0e0d0c0b0a09, 0x0007060504030201));
    const Words by1 = _mm256_xor_si256(_mm256_srli_epi64(x, 1), _mm256_slli_epi64(x, 63));
    return _mm256_xor_si256(_mm256_xor_si256(by1, _mm256_srli_epi64(x, 7)),
                            _mm256_shuffle_epi8(x, rotateBy8));
}

ISA_AVX2_BMI ALWAYS_INLINE __m128i SmallSigma1(__m128i x) {
    const __m128i by19 = _mm_xor_si128(_mm_srli_epi64(x, 19), _mm_slli_epi64(x, 45));
    const __m128i by61 = _mm_xor_si128(_mm_srli_epi64(x, 61), _mm_slli_epi64(x, 3));
    return _mm_xor_si128(_mm_xor_si128(by19, by61), _mm_srli_epi64(x, 6));
}

// The words 16..19 that follow the words 0..15 in m0..m3. The last two of them depend on the first two.
ISA_AVX2_BMI ALWAYS_INLINE Words NextWords(Words m0, Words m1, Words m2, Words m3) {
    const Words sum =
        _mm256_add_epi64(_mm256_add_epi64(m0, ShiftByOne(m2, m3)), SmallSigma0(ShiftByOne(m0, m1)));
    const __m128i low =
        _mm_add_epi64(_mm256_castsi256_si128(sum), SmallSigma1(_mm256_extracti128_si256(m3, 1)));
    const __m128i high = _mm_add_epi64(_mm256_extracti128_si256(sum, 1), SmallSigma1(low));
    return _mm256_set_m128i(high, low);
}

ISA_AVX2_BMI ALWAYS_INLINE void StoreWithConstants(Word* wk, Words words, int t) {
    const Words constants = _mm256_loadu_si256(reinterpret_cast<const Words*>(sha512RoundConstants + t));
    _mm256_store_si256(reinterpret_cast<Words*>(wk), _mm256_add_epi64(words, constants));
}

ISA_AVX2_BMI ALWAYS_INLINE Word BigSigma0(Word x) {
    return std::rotr(x, 28) ^ std::rotr(x, 34) ^ std::rotr(x, 39);
}

ISA_AVX2_BMI ALWAYS_INLINE Word BigSigma1(Word x) {
    return std::rotr(x, 14) ^ std::rotr(x, 18) ^ std::rotr(x, 41);
}

// One round, as in the portable kernel, but for two things: the halves of the choice share no bit and are added one by
// one, and the big sigma of `a` is added at the start of the next round, which keeps it out of the way of the chain
// from e to the next e.
#define ROUND(a, b, c, d, e, f, g, h, i)                                                                     \
    h += wk[i];                                                                                              \
    a += sigmaOfA;                                                                                           \
    h += g & ~e;                                                                                             \
    h += e & f;                                                                                              \
    h += BigSigma1(e);                                                                                       \
    d += h;                                                                                                  \
    aXorB = a ^ b;                                                                                           \
    h += b ^ (aXorB & bXorC);                                                                                \
    sigmaOfA = BigSigma0(a);                                                                                 \
    bXorC = aXorB;

#define FOUR_ROUNDS(a, b, c, d, e, f, g, h, i)                                                               \
    ROUND(a, b, c, d, e, f, g, h, i)                                                                         \
    ROUND(h, a, b, c, d, e, f, g, i + 1)                                                                     \
    ROUND(g, h, a, b, c, d, e, f, i + 2)                                                                     \
    ROUND(f, g, h, a, b, c, d, e, i + 3)

} // namespace

ISA_AVX2_BMI void Sha512_Blocks_X86Avx2(std::uint64_t state[8], const std::uint8_t* blocks,
                                        std::size_t count) {
    Word a = state[0];
    Word b = state[1];
    Word c = state[2];
    Word d = state[3];
    Word e = state[4];
    Word f = state[5];
    Word g = state[6];
    Word h = state[7];
    for (; count != 0; --count, blocks += 128) {
        alignas(32) Word wk[16];
        Words m0 = LoadWords(blocks);
        Words m1 = LoadWords(blocks + 32);
        Words m2 = LoadWords(blocks + 64);
        Words m3 = LoadWords(blocks + 96);
        StoreWithConstants(wk, m0, 0);
        StoreWithConstants(wk + 4, m1, 4);
        StoreWithConstants(wk + 8, m2, 8);
        StoreWithConstants(wk + 12, m3, 12);
        Word aXorB;
        Word bXorC = b ^ c;
        Word sigmaOfA = 0;
        for (int t = 16; t < 80; t += 16) {
            m0 = NextWords(m0, m1, m2, m3);
            FOUR_ROUNDS(a, b, c, d, e, f, g, h, 0)
            StoreWithConstants(wk, m0, t);
            m1 = NextWords(m1, m2, m3, m0);
            FOUR_ROUNDS(e, f, g, h, a, b, c, d, 4)
            StoreWithConstants(wk + 4, m1, t + 4);
            m2 = NextWords(m2, m3, m0, m1);
            FOUR_ROUNDS(a, b, c, d, e, f, g, h, 8)
            StoreWithConstants(wk + 8, m2, t + 8);
            m3 = NextWords(m3, m0, m1, m2);
            FOUR_ROUNDS(e, f, g, h, a, b, c, d, 12)
            StoreWithConstants(wk + 12, m3, t + 12);
        }
        FOUR_ROUNDS(a, b, c, d, e, f, g, h, 0)
        FOUR_ROUNDS(e, f, g, h, a, b, c, d, 4)
        FOUR_ROUNDS(a, b, c, d, e, f, g, h, 8)
        FOUR_ROUNDS(e, f, g, h, a, b, c, d, 12)
        a = state[0] += a + sigmaOfA;
        b = state[1] += b;
        c = state[2] += c;
        d = state[3] += d;
        e = state[4] += e;
        f = state[5] += f;
        g = state[6] += g;
        h = state[7] += h;
    }
}

} // namespace kernels
