// SPDX-License-Identifier: MIT
// SHA-1 of many messages side by side.
//
// Lanes_X86Avx2.h or Lanes_X86Avx512.h is included ahead of this.
#pragma once

#include "hash/kernels/Sha1.h"

namespace fyrn::kernels {
namespace {

template <int round>
ISA_LANES ALWAYS_INLINE Words32 Function(Words32 b, Words32 c, Words32 d, Words32 bXorC, Words32 cXorD) {
    if constexpr (round < 20)
        return Choose(b, c, d);
    else if constexpr (round < 40 || round >= 60)
        return Xor(b, c, d);
    else
        return Majority(b, c, d, bXorC, cXorD);
}

inline constexpr std::uint32_t sha1RoundConstants[4] = {0x5a827999, 0x6ed9eba1, 0x8f1bbcdc, 0xca62c1d6};

// One round: e = rotate(a, 5) + f(b, c, d) + e + constant + word, and b is rotated by 30. It also makes the word of the
// schedule that takes the place of the one it used.
template <int round>
ISA_LANES ALWAYS_INLINE void Round(Words32 a, Words32& b, Words32 c, Words32 d, Words32& e, Words32 w[16]) {
    constexpr int now = round % 16;
    const Words32 sum = e + w[now] + sha1RoundConstants[round / 20];
    e = sum + Function<round>(b, c, d, b ^ c, c ^ d) + RotateLeft<5>(a);
    b = RotateLeft<30>(b);
    if constexpr (round < 64)
        w[now] = RotateLeft<1>(Xor(w[now], w[(now + 2) % 16], w[(now + 8) % 16]) ^ w[(now + 13) % 16]);
}

// Five rounds at a time, from `round` to 79.
template <int round>
ISA_LANES ALWAYS_INLINE void RoundsFrom(Words32& a, Words32& b, Words32& c, Words32& d, Words32& e,
                                        Words32 w[16]) {
    Round<round>(a, b, c, d, e, w);
    Round<round + 1>(e, a, b, c, d, w);
    Round<round + 2>(d, e, a, b, c, w);
    Round<round + 3>(c, d, e, a, b, w);
    Round<round + 4>(b, c, d, e, a, w);
    if constexpr (round < 75)
        RoundsFrom<round + 5>(a, b, c, d, e, w);
}

// Compresses blocks as Sha1Lanes does, of Words32::lanes messages.
ISA_LANES ALWAYS_INLINE void CompressBlocks(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                            std::size_t count) {
    Words32 a, b, c, d, e;
    Words32 unused[3];
    LoadFour(states, 4, unused[0], unused[1], unused[2], e);
    LoadFour(states, 0, a, b, c, d);
    for (std::size_t offset = 0; offset != 64 * count; offset += 64) {
        const Words32 oldA = a, oldB = b, oldC = c, oldD = d, oldE = e;
        Words32 w[16];
        LoadLine(blocks, offset, w);
        ReverseBytes(w);
        RoundsFrom<0>(a, b, c, d, e, w);
        a = a + oldA;
        b = b + oldB;
        c = c + oldC;
        d = d + oldD;
        e = e + oldE;
    }
    StoreFour(states, 4, b, c, d, e);
    StoreFour(states, 0, a, b, c, d);
}

} // namespace
} // namespace fyrn::kernels
