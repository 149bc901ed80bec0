// SPDX-License-Identifier: MIT
// MD4 in the lowest lane of vectors of four: the three-input logic and the rotations of AVX-512VL make a
// step three instructions of one cycle each, one behind the other (function, sum, rotation), in all three
// rounds. Scalar instructions need four in the first.
//
// Every step also adds a word of the block and, from the second round on, a constant. Those sums are made
// by vectors, before the rounds wait for them. Nothing here is wider than 256 bits, since 512-bit
// instructions close one of three ports to the others.
#include "hash/kernels/Isa.h"
#include "hash/kernels/Md4.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

using Word = __m128i; // in its lowest 32 bits; what the others hold is never used
using EightWords = __m256i;

// The word of the block that a step of a round adds.
constexpr int wordOfStep[3][16] = {
    {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
    {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15},
    {0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15},
};

struct alignas(32) Sums {
    std::uint32_t of[3][16]; // by round and word of the block
};

ISA_AVX512 ALWAYS_INLINE void AddConstants(Sums& sums, const std::uint8_t* block) {
    constexpr int constants[3] = {0, 0x5a827999, 0x6ed9eba1};
    const EightWords low = _mm256_loadu_si256(reinterpret_cast<const EightWords*>(block));
    const EightWords high = _mm256_loadu_si256(reinterpret_cast<const EightWords*>(block + 32));
    for (int round = 0; round < 3; ++round) {
        const EightWords constant = _mm256_set1_epi32(constants[round]);
        auto* const to = reinterpret_cast<EightWords*>(sums.of[round]);
        _mm256_store_si256(to, _mm256_add_epi32(low, constant));
        _mm256_store_si256(to + 1, _mm256_add_epi32(high, constant));
    }
}

// The rounds' functions of b, c and d, as truth tables over (d, c, b): the first operand is copied before
// its register takes the result, and d is known long before b.
constexpr int functions[3] = {0xd8, 0xe8, 0x96};

template <int round, int step, int rotation>
ISA_AVX512 ALWAYS_INLINE void Step(Word& a, Word b, Word c, Word d, const Sums& sums) {
    const Word sum = _mm_set1_epi32(static_cast<int>(sums.of[round][wordOfStep[round][step]]));
    a = _mm_add_epi32(a, sum);
    a = _mm_add_epi32(a, _mm_ternarylogic_epi32(d, c, b, functions[round]));
    a = _mm_rol_epi32(a, rotation);
}

template <int round, int step, int s0, int s1, int s2, int s3>
ISA_AVX512 ALWAYS_INLINE void FourSteps(Word& a, Word& b, Word& c, Word& d, const Sums& sums) {
    Step<round, step, s0>(a, b, c, d, sums);
    Step<round, step + 1, s1>(d, a, b, c, sums);
    Step<round, step + 2, s2>(c, d, a, b, sums);
    Step<round, step + 3, s3>(b, c, d, a, sums);
}

template <int round, int s0, int s1, int s2, int s3>
ISA_AVX512 ALWAYS_INLINE void Round(Word& a, Word& b, Word& c, Word& d, const Sums& sums) {
    FourSteps<round, 0, s0, s1, s2, s3>(a, b, c, d, sums);
    FourSteps<round, 4, s0, s1, s2, s3>(a, b, c, d, sums);
    FourSteps<round, 8, s0, s1, s2, s3>(a, b, c, d, sums);
    FourSteps<round, 12, s0, s1, s2, s3>(a, b, c, d, sums);
}

} // namespace

ISA_AVX512 void Md4_Blocks_X86Avx512(std::uint32_t state[4], const std::uint8_t* blocks, std::size_t count) {
    Word a = _mm_cvtsi32_si128(static_cast<int>(state[0]));
    Word b = _mm_cvtsi32_si128(static_cast<int>(state[1]));
    Word c = _mm_cvtsi32_si128(static_cast<int>(state[2]));
    Word d = _mm_cvtsi32_si128(static_cast<int>(state[3]));
    Sums sums{};
    for (; count != 0; --count, blocks += 64) {
        const Word oldA = a, oldB = b, oldC = c, oldD = d;
        AddConstants(sums, blocks);
        Round<0, 3, 7, 11, 19>(a, b, c, d, sums);
        Round<1, 3, 5, 9, 13>(a, b, c, d, sums);
        Round<2, 3, 9, 11, 15>(a, b, c, d, sums);
        a = _mm_add_epi32(a, oldA);
        b = _mm_add_epi32(b, oldB);
        c = _mm_add_epi32(c, oldC);
        d = _mm_add_epi32(d, oldD);
    }
    state[0] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(a));
    state[1] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(b));
    state[2] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(c));
    state[3] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(d));
}

} // namespace fyrn::kernels
