// SPDX-License-Identifier: MIT
// What the kernels of BLAKE2b in vectors of four words share: each row of the four by four working words is one
// register, and the four mixings of a half round run side by side. For the diagonals the row b, which is ready last,
// stays where it is and the others turn to it, so that lane j holds the diagonal mixing (j + 3) mod 4.
//
// A kernel defines ISA_BLAKE2B, the instructions that it is compiled for, before it includes this, and brings Rotate.
#pragma once

#include "hash/kernels/Blake2b.h"
#include "hash/kernels/Blake2b_Sigma.h"
#include "hash/kernels/Isa.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

struct Rows {
    __m256i a, b, c, d;
};

ISA_BLAKE2B ALWAYS_INLINE __m256i Load(const void* words) {
    return _mm256_loadu_si256(static_cast<const __m256i*>(words));
}

ISA_BLAKE2B ALWAYS_INLINE void Store(void* words, __m256i row) {
    _mm256_storeu_si256(static_cast<__m256i*>(words), row);
}

ISA_BLAKE2B ALWAYS_INLINE __m128i LoadTwo(const std::uint8_t* low, const std::uint8_t* high) {
    const __m128i lowWord = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(low));
    const auto* const highWord = reinterpret_cast<const double*>(high);
    return _mm_castpd_si128(_mm_loadh_pd(_mm_castsi128_pd(lowWord), highWord));
}

// Four words of the block, the first in the lowest lane.
template <int w0, int w1, int w2, int w3>
ISA_BLAKE2B ALWAYS_INLINE __m256i Gather(const std::uint8_t* block) {
    return _mm256_set_m128i(LoadTwo(block + 8 * w2, block + 8 * w3), LoadTwo(block + 8 * w0, block + 8 * w1));
}

// Every word rotated to the right by 16, 24, 32 or 63 bits.
template <int bits>
ISA_BLAKE2B __m256i Rotate(__m256i x);

// The mixing function G in four lanes.
ISA_BLAKE2B ALWAYS_INLINE void Mix(Rows& v, __m256i x, __m256i y) {
    v.a = _mm256_add_epi64(_mm256_add_epi64(v.a, x), v.b);
    v.d = Rotate<32>(_mm256_xor_si256(v.d, v.a));
    v.c = _mm256_add_epi64(v.c, v.d);
    v.b = Rotate<24>(_mm256_xor_si256(v.b, v.c));
    v.a = _mm256_add_epi64(_mm256_add_epi64(v.a, y), v.b);
    v.d = Rotate<16>(_mm256_xor_si256(v.d, v.a));
    v.c = _mm256_add_epi64(v.c, v.d);
    v.b = Rotate<63>(_mm256_xor_si256(v.b, v.c));
}

template <int round>
ISA_BLAKE2B ALWAYS_INLINE void Round(Rows& v, const std::uint8_t* block) {
    constexpr const int(&s)[16] = blake2bSigma[round % 10];
    Mix(v, Gather<s[0], s[2], s[4], s[6]>(block), Gather<s[1], s[3], s[5], s[7]>(block));
    v.a = _mm256_permute4x64_epi64(v.a, 0x93);
    v.d = _mm256_permute4x64_epi64(v.d, 0x4e);
    v.c = _mm256_permute4x64_epi64(v.c, 0x39);
    Mix(v, Gather<s[14], s[8], s[10], s[12]>(block), Gather<s[15], s[9], s[11], s[13]>(block));
    v.a = _mm256_permute4x64_epi64(v.a, 0x39);
    v.d = _mm256_permute4x64_epi64(v.d, 0x4e);
    v.c = _mm256_permute4x64_epi64(v.c, 0x93);
}

ISA_BLAKE2B ALWAYS_INLINE void AllRounds(Rows& v, const std::uint8_t* block) {
    Round<0>(v, block);
    Round<1>(v, block);
    Round<2>(v, block);
    Round<3>(v, block);
    Round<4>(v, block);
    Round<5>(v, block);
    Round<6>(v, block);
    Round<7>(v, block);
    Round<8>(v, block);
    Round<9>(v, block);
    Round<10>(v, block);
    Round<11>(v, block);
}

// Absorbs blocks as Blake2bCompress does.
ISA_BLAKE2B ALWAYS_INLINE void CompressBlocks(Blake2bState& state, const std::uint8_t* blocks,
                                              std::size_t count, std::uint64_t added) {
    __m256i low = Load(state.chain);
    __m256i high = Load(state.chain + 4);
    for (; count != 0; --count, blocks += 128) {
        state.counter[0] += added;
        if (state.counter[0] < added)
            ++state.counter[1];
        const __m256i counterAndFlags = _mm256_set_epi64x(
            static_cast<long long>(state.flags[1]), static_cast<long long>(state.flags[0]),
            static_cast<long long>(state.counter[1]), static_cast<long long>(state.counter[0]));
        Rows v{low, high, Load(blake2bInitialValues),
               _mm256_xor_si256(Load(blake2bInitialValues + 4), counterAndFlags)};
        AllRounds(v, blocks);
        low = _mm256_xor_si256(low, _mm256_xor_si256(v.a, v.c));
        high = _mm256_xor_si256(high, _mm256_xor_si256(v.b, v.d));
    }
    Store(state.chain, low);
    Store(state.chain + 4, high);
}

} // namespace
} // namespace fyrn::kernels
