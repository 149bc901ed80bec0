// SPDX-License-Identifier: MIT
// SHA-256 with the processor's SHA instructions. One of them does two rounds on two registers that hold the state as
// (A, B, E, F) and (C, D, G, H), and the two change places each time. Four cycles for each two rounds are the limit of
// one message; the message schedule, four words in three instructions and an addition, runs beside it.
#pragma once

#include "hash/kernels/Isa.h"
#include "hash/kernels/Sha256.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

struct State {
    __m128i abef;
    __m128i cdgh;
};

ISA_SHA ALWAYS_INLINE __m128i LoadWords(const std::uint8_t* bytes) {
    const __m128i reverse = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
    return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)), reverse);
}

ISA_SHA ALWAYS_INLINE __m128i RoundConstants(int group) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(sha256RoundConstants) + group);
}

// The four rounds of a group from 0 to 15. w holds the message words of this group and the next three.
template <int group>
ISA_SHA ALWAYS_INLINE void FourRounds(State& state, __m128i w[4]) {
    constexpr int now = group % 4;
    const __m128i sum = _mm_add_epi32(w[now], RoundConstants(group));
    state.cdgh = _mm_sha256rnds2_epu32(state.cdgh, state.abef, sum);
    state.abef = _mm_sha256rnds2_epu32(state.abef, state.cdgh, _mm_shuffle_epi32(sum, 0x0e));
    if constexpr (group < 12) {
        const __m128i nineBefore = _mm_alignr_epi8(w[(group + 3) % 4], w[(group + 2) % 4], 4);
        const __m128i partial = _mm_add_epi32(_mm_sha256msg1_epu32(w[now], w[(group + 1) % 4]), nineBefore);
        w[now] = _mm_sha256msg2_epu32(partial, w[(group + 3) % 4]);
    }
}

ISA_SHA ALWAYS_INLINE void LoadBlock(__m128i w[4], const std::uint8_t* block) {
    w[0] = LoadWords(block);
    w[1] = LoadWords(block + 16);
    w[2] = LoadWords(block + 32);
    w[3] = LoadWords(block + 48);
}

ISA_SHA ALWAYS_INLINE void Add(State& state, const State& before) {
    state.abef = _mm_add_epi32(state.abef, before.abef);
    state.cdgh = _mm_add_epi32(state.cdgh, before.cdgh);
}

ISA_SHA ALWAYS_INLINE State LoadState(const std::uint32_t words[8]) {
    const auto* const halves = reinterpret_cast<const __m128i*>(words);
    const __m128i cdab = _mm_shuffle_epi32(_mm_loadu_si128(halves), 0xb1);
    const __m128i efgh = _mm_shuffle_epi32(_mm_loadu_si128(halves + 1), 0x1b);
    return {_mm_alignr_epi8(cdab, efgh, 8), _mm_blend_epi16(efgh, cdab, 0xf0)};
}

ISA_SHA ALWAYS_INLINE void StoreState(std::uint32_t words[8], const State& state) {
    auto* const halves = reinterpret_cast<__m128i*>(words);
    const __m128i feba = _mm_shuffle_epi32(state.abef, 0x1b);
    const __m128i dchg = _mm_shuffle_epi32(state.cdgh, 0xb1);
    _mm_storeu_si128(halves, _mm_blend_epi16(feba, dchg, 0xf0));
    _mm_storeu_si128(halves + 1, _mm_alignr_epi8(dchg, feba, 8));
}

} // namespace
} // namespace fyrn::kernels
