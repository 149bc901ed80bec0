// SPDX-License-Identifier: MIT
// MD5 of many messages side by side. A step waits for the one before, four instructions in a row, so twice as many
// messages as a vector has words are nearly twice as fast.
//
// Lanes_X86Avx2.h or Lanes_X86Avx512.h is included ahead of this.
#pragma once

#include "hash/kernels/Md5.h"
#include "hash/kernels/Md5_Steps.h"

namespace fyrn::kernels {
namespace {

// One step: a = b + rotate(a + f(b, c, d) + word + constant). The function of the last round is subtracted, inverted,
// with a constant that is less by one.
template <int round, int step, int rotation, class V>
ISA_LANES ALWAYS_INLINE void Step(V& a, V b, V c, V d, const V w[16]) {
    constexpr std::uint32_t sine = md5::sines[16 * round + step];
    const V sum = a + w[md5::WordOfStep(round, step)] + (round == 3 ? sine - 1 : sine);
    if constexpr (round == 0)
        a = sum + Choose(b, c, d);
    else if constexpr (round == 1)
        a = sum + Choose(d, b, c);
    else if constexpr (round == 2)
        a = sum + Xor(b, c, d);
    else
        a = sum - XorNotAnd(c, b, d);
    a = RotateLeft<rotation>(a) + b;
}

template <int round, int step, int s0, int s1, int s2, int s3, class V>
ISA_LANES ALWAYS_INLINE void FourSteps(V& a, V& b, V& c, V& d, const V w[16]) {
    Step<round, step, s0>(a, b, c, d, w);
    Step<round, step + 1, s1>(d, a, b, c, w);
    Step<round, step + 2, s2>(c, d, a, b, w);
    Step<round, step + 3, s3>(b, c, d, a, w);
}

template <int round, int s0, int s1, int s2, int s3, class V>
ISA_LANES ALWAYS_INLINE void Round(V& a, V& b, V& c, V& d, const V w[16]) {
    FourSteps<round, 0, s0, s1, s2, s3>(a, b, c, d, w);
    FourSteps<round, 4, s0, s1, s2, s3>(a, b, c, d, w);
    FourSteps<round, 8, s0, s1, s2, s3>(a, b, c, d, w);
    FourSteps<round, 12, s0, s1, s2, s3>(a, b, c, d, w);
}

// Compresses blocks as Md5Lanes does, of V::lanes messages.
template <class V>
ISA_LANES ALWAYS_INLINE void CompressBlocks(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                            std::size_t count) {
    V a, b, c, d;
    LoadFour(states, 0, a, b, c, d);
    for (std::size_t offset = 0; offset != 64 * count; offset += 64) {
        const V oldA = a, oldB = b, oldC = c, oldD = d;
        V w[16];
        LoadLine(blocks, offset, w);
        Round<0, 7, 12, 17, 22>(a, b, c, d, w);
        Round<1, 5, 9, 14, 20>(a, b, c, d, w);
        Round<2, 4, 11, 16, 23>(a, b, c, d, w);
        Round<3, 6, 10, 15, 21>(a, b, c, d, w);
        a = a + oldA;
        b = b + oldB;
        c = c + oldC;
        d = d + oldD;
    }
    StoreFour(states, 0, a, b, c, d);
}

} // namespace
} // namespace fyrn::kernels
