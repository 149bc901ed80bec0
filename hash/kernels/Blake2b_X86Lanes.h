// SPDX-License-Identifier: MIT
// BLAKE2b of many messages side by side.
//
// Lanes_X86Avx2.h or Lanes_X86Avx512.h is included ahead of this.
#pragma once

#include "hash/kernels/Blake2b.h"
#include "hash/kernels/Blake2b_Sigma.h"

#include <cstddef>

namespace fyrn::kernels {
namespace {

ISA_LANES ALWAYS_INLINE void Mix(Words64& a, Words64& b, Words64& c, Words64& d, Words64 x, Words64 y) {
    a = a + x + b;
    d = RotateRight<32>(d ^ a);
    c = c + d;
    b = RotateRight<24>(b ^ c);
    a = a + y + b;
    d = RotateRight<16>(d ^ a);
    c = c + d;
    b = RotateRight<63>(b ^ c);
}

// The rounds from `round` to 11.
template <int round>
ISA_LANES ALWAYS_INLINE void RoundsFrom(Words64 v[16], const Words64 m[16]) {
    constexpr const int(&s)[16] = blake2bSigma[round % 10];
    Mix(v[0], v[4], v[8], v[12], m[s[0]], m[s[1]]);
    Mix(v[1], v[5], v[9], v[13], m[s[2]], m[s[3]]);
    Mix(v[2], v[6], v[10], v[14], m[s[4]], m[s[5]]);
    Mix(v[3], v[7], v[11], v[15], m[s[6]], m[s[7]]);
    Mix(v[0], v[5], v[10], v[15], m[s[8]], m[s[9]]);
    Mix(v[1], v[6], v[11], v[12], m[s[10]], m[s[11]]);
    Mix(v[2], v[7], v[8], v[13], m[s[12]], m[s[13]]);
    Mix(v[3], v[4], v[9], v[14], m[s[14]], m[s[15]]);
    if constexpr (round < 11)
        RoundsFrom<round + 1>(v, m);
}

// Adds to the counters of all messages, each of two words.
ISA_LANES ALWAYS_INLINE void Count(Words64& low, Words64& high, Words64 added) {
    const Words64 sum = low + added;
    const Words64 notSum = sum ^ Broadcast(~std::uint64_t{0});
    const Words64 carries = Majority(low, added, notSum, low ^ added, added ^ notSum); // in the highest bit
    high = high + ShiftRight<63>(carries);
    low = sum;
}

// Compresses blocks as Blake2bLanes does, of Words64::lanes messages.
ISA_LANES ALWAYS_INLINE void CompressBlocks(Blake2bState* const states[], const std::uint8_t* const blocks[],
                                            std::size_t count, std::uint64_t added) {
    constexpr std::size_t counterOffset = offsetof(Blake2bState, counter);
    constexpr std::size_t flagsOffset = offsetof(Blake2bState, flags);
    Words64 h[8];
    Words64 counter[2];
    Words64 flags[2];
    LoadTwo(states, 0, h[0], h[1]);
    LoadTwo(states, 16, h[2], h[3]);
    LoadTwo(states, 32, h[4], h[5]);
    LoadTwo(states, 48, h[6], h[7]);
    LoadTwo(states, counterOffset, counter[0], counter[1]);
    LoadTwo(states, flagsOffset, flags[0], flags[1]);
    for (std::size_t offset = 0; offset != 128 * count; offset += 128) {
        Count(counter[0], counter[1], Broadcast(added));
        Words64 m[16];
        LoadLine(blocks, offset, m);
        LoadLine(blocks, offset + 64, m + 8);
        constexpr const std::uint64_t(&iv)[8] = blake2bInitialValues;
        Words64 v[16] = {h[0],
                         h[1],
                         h[2],
                         h[3],
                         h[4],
                         h[5],
                         h[6],
                         h[7],
                         Broadcast(iv[0]),
                         Broadcast(iv[1]),
                         Broadcast(iv[2]),
                         Broadcast(iv[3]),
                         Broadcast(iv[4]) ^ counter[0],
                         Broadcast(iv[5]) ^ counter[1],
                         Broadcast(iv[6]) ^ flags[0],
                         Broadcast(iv[7]) ^ flags[1]};
        RoundsFrom<0>(v, m);
        h[0] = Xor(h[0], v[0], v[8]);
        h[1] = Xor(h[1], v[1], v[9]);
        h[2] = Xor(h[2], v[2], v[10]);
        h[3] = Xor(h[3], v[3], v[11]);
        h[4] = Xor(h[4], v[4], v[12]);
        h[5] = Xor(h[5], v[5], v[13]);
        h[6] = Xor(h[6], v[6], v[14]);
        h[7] = Xor(h[7], v[7], v[15]);
    }
    StoreTwo(states, 0, h[0], h[1]);
    StoreTwo(states, 16, h[2], h[3]);
    StoreTwo(states, 32, h[4], h[5]);
    StoreTwo(states, 48, h[6], h[7]);
    StoreTwo(states, counterOffset, counter[0], counter[1]);
}

} // namespace
} // namespace fyrn::kernels
