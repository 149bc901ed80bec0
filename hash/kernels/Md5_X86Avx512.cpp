// SPDX-License-Identifier: MIT
// MD5 in the lowest lane of vectors of four: the three-input logic and the rotations of AVX-512VL make a
// step four instructions of one cycle each, one behind the other (function, sum, rotation, sum), in all
// four rounds. Scalar instructions need five for two of the rounds' functions.
//
// Every step also adds a word of the block and a constant. These sums are made by vectors, before the
// rounds wait for them: for each round 16 sums in the order of the block's words, each with the constant
// that its word meets there. Nothing here is wider than 256 bits, since 512-bit instructions close one of
// three ports to the others.
#include "hash/kernels/Isa.h"
#include "hash/kernels/Md5.h"
#include "hash/kernels/Md5_Steps.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

using Word = __m128i; // in its lowest 32 bits; what the others hold is never used
using EightWords = __m256i;
using md5::sines;
using md5::WordOfStep;

struct alignas(32) Sums {
    std::uint32_t of[4][16]; // by round and word of the block
};

constexpr Sums constants = [] {
    Sums sums{};
    for (int round = 0; round < 4; ++round)
        for (int step = 0; step < 16; ++step)
            sums.of[round][WordOfStep(round, step)] = sines[16 * round + step];
    return sums;
}();

ISA_AVX512 ALWAYS_INLINE void AddConstants(Sums& sums, const std::uint8_t* block) {
    const EightWords low = _mm256_loadu_si256(reinterpret_cast<const EightWords*>(block));
    const EightWords high = _mm256_loadu_si256(reinterpret_cast<const EightWords*>(block + 32));
    for (int round = 0; round < 4; ++round) {
        const auto* const from = reinterpret_cast<const EightWords*>(constants.of[round]);
        auto* const to = reinterpret_cast<EightWords*>(sums.of[round]);
        _mm256_store_si256(to, _mm256_add_epi32(low, _mm256_load_si256(from)));
        _mm256_store_si256(to + 1, _mm256_add_epi32(high, _mm256_load_si256(from + 1)));
    }
}

// The rounds' functions of b, c and d, as truth tables over (d, c, b): the first operand is copied before
// its register takes the result, and d is known long before b.
constexpr int functions[4] = {0xd8, 0xac, 0x96, 0x63};

template <int round, int step, int rotation>
ISA_AVX512 ALWAYS_INLINE void Step(Word& a, Word b, Word c, Word d, const Sums& sums) {
    const Word sum = _mm_set1_epi32(static_cast<int>(sums.of[round][WordOfStep(round, step)]));
    a = _mm_add_epi32(a, sum);
    a = _mm_add_epi32(a, _mm_ternarylogic_epi32(d, c, b, functions[round]));
    a = _mm_add_epi32(_mm_rol_epi32(a, rotation), b);
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

ISA_AVX512 void Md5_Blocks_X86Avx512(std::uint32_t state[4], const std::uint8_t* blocks, std::size_t count) {
    Word a = _mm_cvtsi32_si128(static_cast<int>(state[0]));
    Word b = _mm_cvtsi32_si128(static_cast<int>(state[1]));
    Word c = _mm_cvtsi32_si128(static_cast<int>(state[2]));
    Word d = _mm_cvtsi32_si128(static_cast<int>(state[3]));
    Sums sums{};
    for (; count != 0; --count, blocks += 64) {
        const Word oldA = a, oldB = b, oldC = c, oldD = d;
        AddConstants(sums, blocks);
        Round<0, 7, 12, 17, 22>(a, b, c, d, sums);
        Round<1, 5, 9, 14, 20>(a, b, c, d, sums);
        Round<2, 4, 11, 16, 23>(a, b, c, d, sums);
        Round<3, 6, 10, 15, 21>(a, b, c, d, sums);
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
