// SPDX-License-Identifier: MIT
// SHA-512 of many messages side by side.
//
// Lanes_X86Avx2.h or Lanes_X86Avx512.h is included ahead of this.
#pragma once

#include "hash/kernels/Sha512.h"

namespace fyrn::kernels {
namespace {

ISA_LANES ALWAYS_INLINE Words64 BigSigma0(Words64 x) {
    return Xor(RotateRight<28>(x), RotateRight<34>(x), RotateRight<39>(x));
}

ISA_LANES ALWAYS_INLINE Words64 BigSigma1(Words64 x) {
    return Xor(RotateRight<14>(x), RotateRight<18>(x), RotateRight<41>(x));
}

ISA_LANES ALWAYS_INLINE Words64 SmallSigma0(Words64 x) {
    return Xor(RotateRight<1>(x), RotateRight<8>(x), ShiftRight<7>(x));
}

ISA_LANES ALWAYS_INLINE Words64 SmallSigma1(Words64 x) {
    return Xor(RotateRight<19>(x), RotateRight<61>(x), ShiftRight<6>(x));
}

struct WorkingWords {
    Words64 a, b, c, d, e, f, g, h;
    Words64 bXorC;
};

// The variables go by the names that they have in the first of eight rounds.
#define ROUND(t, a, b, c, d, e, f, g, h)                                                                     \
    {                                                                                                        \
        const Words64 sum = h + w[(t) % 16] + constants[t] + Choose(e, f, g) + BigSigma1(e);                 \
        const Words64 aXorB = a ^ b;                                                                         \
        d = d + sum;                                                                                         \
        h = sum + Majority(a, b, c, aXorB, bXorC) + BigSigma0(a);                                            \
        bXorC = aXorB;                                                                                       \
        if constexpr (next)                                                                                  \
            w[(t) % 16] = w[(t) % 16] + w[((t) + 9) % 16] + SmallSigma0(w[((t) + 1) % 16]) +                 \
                          SmallSigma1(w[((t) + 14) % 16]);                                                   \
    }

// Sixteen rounds; with `next`, each also makes the word of the schedule that takes the place of the one it used.
template <bool next>
ISA_LANES ALWAYS_INLINE void SixteenRounds(WorkingWords& v, Words64 w[16], const std::uint64_t* constants) {
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

// Compresses blocks as Sha512Lanes does, of Words64::lanes messages.
ISA_LANES ALWAYS_INLINE void CompressBlocks(std::uint64_t* const states[], const std::uint8_t* const blocks[],
                                            std::size_t count) {
    WorkingWords v;
    LoadTwo(states, 0, v.a, v.b);
    LoadTwo(states, 16, v.c, v.d);
    LoadTwo(states, 32, v.e, v.f);
    LoadTwo(states, 48, v.g, v.h);
    for (std::size_t offset = 0; offset != 128 * count; offset += 128) {
        const WorkingWords old = v;
        Words64 w[16];
        LoadLine(blocks, offset, w);
        LoadLine(blocks, offset + 64, w + 8);
        ReverseBytes(w);
        v.bXorC = v.b ^ v.c;
        SixteenRounds<true>(v, w, sha512RoundConstants);
        SixteenRounds<true>(v, w, sha512RoundConstants + 16);
        SixteenRounds<true>(v, w, sha512RoundConstants + 32);
        SixteenRounds<true>(v, w, sha512RoundConstants + 48);
        SixteenRounds<false>(v, w, sha512RoundConstants + 64);
        v.a = v.a + old.a;
        v.b = v.b + old.b;
        v.c = v.c + old.c;
        v.d = v.d + old.d;
        v.e = v.e + old.e;
        v.f = v.f + old.f;
        v.g = v.g + old.g;
        v.h = v.h + old.h;
    }
    StoreTwo(states, 0, v.a, v.b);
    StoreTwo(states, 16, v.c, v.d);
    StoreTwo(states, 32, v.e, v.f);
    StoreTwo(states, 48, v.g, v.h);
}

} // namespace
} // namespace fyrn::kernels
