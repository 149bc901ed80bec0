// SPDX-License-Identifier: MIT
// SHA-1 with the processor's SHA instructions. One of them does four rounds on a register that holds A, B, C and D, the
// first in the highest word, and takes E already added to the first message word; what E is in the four rounds after
// that is a rotation of this A, which another instruction adds to the next four message words. The chain of the
// four-round instructions, six cycles each, is the limit of one message; the message schedule runs beside it.
#pragma once

#include "hash/kernels/Isa.h"
#include "hash/kernels/Sha1.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

struct State {
    __m128i abcd;
    __m128i e; // in the highest word, before rotation but for the first four rounds
};

ISA_SHA ALWAYS_INLINE __m128i LoadWords(const std::uint8_t* bytes) {
    const __m128i reverse = _mm_set_epi64x(0x0001020304050607, 0x08090a0b0c0d0e0f);
    return _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)), reverse);
}

// The four rounds of a group from 0 to 19. w holds the message words of this group and the next three.
template <int group>
ISA_SHA ALWAYS_INLINE void FourRounds(State& state, __m128i w[4]) {
    constexpr int now = group % 4;
    const __m128i e = group == 0 ? _mm_add_epi32(state.e, w[now]) : _mm_sha1nexte_epu32(state.e, w[now]);
    state.e = state.abcd;
    state.abcd = _mm_sha1rnds4_epu32(state.abcd, e, group / 5);
    if constexpr (group < 16) {
        const __m128i sum = _mm_xor_si128(_mm_sha1msg1_epu32(w[now], w[(group + 1) % 4]), w[(group + 2) % 4]);
        w[now] = _mm_sha1msg2_epu32(sum, w[(group + 3) % 4]);
    }
}

ISA_SHA ALWAYS_INLINE void LoadBlock(__m128i w[4], const std::uint8_t* block) {
    w[0] = LoadWords(block);
    w[1] = LoadWords(block + 16);
    w[2] = LoadWords(block + 32);
    w[3] = LoadWords(block + 48);
}

ISA_SHA ALWAYS_INLINE void Add(State& state, const State& before) {
    state.e = _mm_sha1nexte_epu32(state.e, before.e);
    state.abcd = _mm_add_epi32(state.abcd, before.abcd);
}

inline constexpr int reverseWords = 0x1b;

ISA_SHA ALWAYS_INLINE State LoadState(const std::uint32_t words[5]) {
    const __m128i dcba = _mm_loadu_si128(reinterpret_cast<const __m128i*>(words));
    return {_mm_shuffle_epi32(dcba, reverseWords), _mm_set_epi32(static_cast<int>(words[4]), 0, 0, 0)};
}

ISA_SHA ALWAYS_INLINE void StoreState(std::uint32_t words[5], const State& state) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(words), _mm_shuffle_epi32(state.abcd, reverseWords));
    words[4] = static_cast<std::uint32_t>(_mm_extract_epi32(state.e, 3));
}

} // namespace
} // namespace fyrn::kernels
