// SPDX-License-Identifier: MIT
// MD4 of many messages side by side. A step waits for the one before, three instructions in a row, so twice as many
// messages as a vector has words are nearly twice as fast.
//
// Lanes_X86Avx2.h or Lanes_X86Avx512.h is included ahead of this.
#pragma once

#include "hash/kernels/Md4.h"

namespace fyrn::kernels {
namespace {

// One step: a = rotate(a + f(b, c, d) + word + constant).
template <int round, int word, int rotation, class V>
ISA_LANES ALWAYS_INLINE void Step(V& a, V b, V c, V d, const V w[16]) {
    if constexpr (round == 0)
        a = a + w[word] + Choose(b, c, d);
    else if constexpr (round == 1)
        a = a + w[word] + std::uint32_t{0x5a827999} + Majority(b, c, d, b ^ c, c ^ d);
    else
        a = a + w[word] + std::uint32_t{0x6ed9eba1} + Xor(b, c, d);
    a = RotateLeft<rotation>(a);
}

// Four steps with words from `word` on, at distances of `distance`.
template <int round, int word, int distance, int s0, int s1, int s2, int s3, class V>
ISA_LANES ALWAYS_INLINE void FourSteps(V& a, V& b, V& c, V& d, const V w[16]) {
    Step<round, word, s0>(a, b, c, d, w);
    Step<round, word + distance, s1>(d, a, b, c, w);
    Step<round, word + 2 * distance, s2>(c, d, a, b, w);
    Step<round, word + 3 * distance, s3>(b, c, d, a, w);
}

// In the last round the words are taken in the order of their reversed bits.
template <int word, class V>
ISA_LANES ALWAYS_INLINE void LastFourSteps(V& a, V& b, V& c, V& d, const V w[16]) {
    Step<2, word, 3>(a, b, c, d, w);
    Step<2, word + 8, 9>(d, a, b, c, w);
    Step<2, word + 4, 11>(c, d, a, b, w);
    Step<2, word + 12, 15>(b, c, d, a, w);
}

template <class V>
ISA_LANES ALWAYS_INLINE void Rounds(V& a, V& b, V& c, V& d, const V w[16]) {
    FourSteps<0, 0, 1, 3, 7, 11, 19>(a, b, c, d, w);
    FourSteps<0, 4, 1, 3, 7, 11, 19>(a, b, c, d, w);
    FourSteps<0, 8, 1, 3, 7, 11, 19>(a, b, c, d, w);
    FourSteps<0, 12, 1, 3, 7, 11, 19>(a, b, c, d, w);
    FourSteps<1, 0, 4, 3, 5, 9, 13>(a, b, c, d, w);
    FourSteps<1, 1, 4, 3, 5, 9, 13>(a, b, c, d, w);
    FourSteps<1, 2, 4, 3, 5, 9, 13>(a, b, c, d, w);
    FourSteps<1, 3, 4, 3, 5, 9, 13>(a, b, c, d, w);
    LastFourSteps<0>(a, b, c, d, w);
    LastFourSteps<2>(a, b, c, d, w);
    LastFourSteps<1>(a, b, c, d, w);
    LastFourSteps<3>(a, b, c, d, w);
}

// Compresses blocks as Md4Lanes does, of V::lanes messages.
template <class V>
ISA_LANES ALWAYS_INLINE void CompressBlocks(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                            std::size_t count) {
    V a, b, c, d;
    LoadFour(states, 0, a, b, c, d);
    for (std::size_t offset = 0; offset != 64 * count; offset += 64) {
        const V oldA = a, oldB = b, oldC = c, oldD = d;
        V w[16];
        LoadLine(blocks, offset, w);
        Rounds(a, b, c, d, w);
        a = a + oldA;
        b = b + oldB;
        c = c + oldC;
        d = d + oldD;
    }
    StoreFour(states, 0, a, b, c, d);
}

} // namespace
} // namespace fyrn::kernels
