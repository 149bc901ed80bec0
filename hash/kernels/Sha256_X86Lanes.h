// SPDX-License-Identifier: MIT
// SHA-256 of many messages side by side.
//
// Lanes_X86Avx2.h or Lanes_X86Avx512.h is included ahead of this.
#pragma once

#include "hash/kernels/Sha256.h"

namespace fyrn::kernels {
namespace {

ISA_LANES ALWAYS_INLINE Words32 BigSigma0(Words32 x) {
    return Xor(RotateRight<2>(x), RotateRight<13>(x), RotateRight<22>(x));
}

ISA_LANES ALWAYS_INLINE Words32 BigSigma1(Words32 x) {
    return Xor(RotateRight<6>(x), RotateRight<11>(x), RotateRight<25>(x));
}

ISA_LANES ALWAYS_INLINE Words32 SmallSigma0(Words32 x) {
    return Xor(RotateRight<7>(x), RotateRight<18>(x), ShiftRight<3>(x));
}

ISA_LANES ALWAYS_INLINE Words32 SmallSigma1(Words32 x) {
    return Xor(RotateRight<17>(x), RotateRight<19>(x), ShiftRight<10>(x));
}

struct WorkingWords {
    Words32 a, b, c, d, e, f, g, h;
    Words32 bXorC;
};

// The variables go by the names that they have in the first of eight rounds.
#define ROUND(t, a, b, c, d, e, f, g, h)                                                                     \
    {                                                                                                        \
        const Words32 sum = h + w[(t) % 16] + constants[t] + Choose(e, f, g) + BigSigma1(e);                 \
        const Words32 aXorB = a ^ b;                                                                         \
        d = d + sum;                                                                                         \
        h = sum + Majority(a, b, c, aXorB, bXorC) + BigSigma0(a);                                            \
        bXorC = aXorB;                                                                                       \
        if constexpr (next)                                                                                  \
            w[(t) % 16] = w[(t) % 16] + w[((t) + 9) % 16] + SmallSigma0(w[((t) + 1) % 16]) +                 \
                          SmallSigma1(w[((t) + 14) % 16]);                                                   \
    }

// Sixteen rounds; with `next`, each also makes the word of the schedule that takes the place of the one it used.
template <bool next>
ISA_LANES ALWAYS_INLINE void SixteenRounds(WorkingWords& v, Words32 w[16], const std::uint32_t* constants) {
    auto& [a, b, c, d, e, f, g, h, bXorC] = v;
    ROUND(0, a, b, c, d, e, f, g, h)
    ROUND(1, h, a, b, c, d, e, f, g)
    ROUND(2, g, h, a, b, c, d, e, f)
    ROUND(3, f, g, h, a, b, c, d, e)
    ROUND(4, e, f, g, h, a, b, c, d)
    ROUND(5, d, e, f, g, h, a, b, c)
    ROUND(6, c, d, e, f, g, h, a, b)
    ROUND(7, b, c, d, e, f, g, h, a)
    ROUND(8, a, b, c, d, e, f, g, h)
    ROUND(9, h, a, b, c, d, e, f, g)
    ROUND(10, g, h, a, b, c, d, e, f)
    ROUND(11, f, g, h, a, b, c, d, e)
    ROUND(12, e, f, g, h, a, b, c, d)
    ROUND(13, d, e, f, g, h, a, b, c)
    ROUND(14, c, d, e, f, g, h, a, b)
    ROUND(15, b, c, d, e, f, g, h, a)
}

#undef ROUND

// Compresses blocks as Sha256Lanes does, of Words32::lanes messages.
ISA_LANES ALWAYS_INLINE void CompressBlocks(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                            std::size_t count) {
    WorkingWords v;
    LoadFour(states, 0, v.a, v.b, v.c, v.d);
    LoadFour(states, 16, v.e, v.f, v.g, v.h);
    for (std::size_t offset = 0; offset != 64 * count; offset += 64) {
        const WorkingWords old = v;
        Words32 w[16];
        LoadLine(blocks, offset, w);
        ReverseBytes(w);
        v.bXorC = v.b ^ v.c;
        SixteenRounds<true>(v, w, sha256RoundConstants);
        SixteenRounds<true>(v, w, sha256RoundConstants + 16);
        SixteenRounds<true>(v, w, sha256RoundConstants + 32);
        SixteenRounds<false>(v, w, sha256RoundConstants + 48);
        v.a = v.a + old.a;
        v.b = v.b + old.b;
        v.c = v.c + old.c;
        v.d = v.d + old.d;
        v.e = v.e + old.e;
        v.f = v.f + old.f;
        v.g = v.g + old.g;
        v.h = v.h + old.h;
    }
    StoreFour(states, 0, v.a, v.b, v.c, v.d);
    StoreFour(states, 16, v.e, v.f, v.g, v.h);
}

} // namespace
} // namespace fyrn::kernels
