// SPDX-License-Identifier: MIT
// The rounds of BLAKE3, for the words of one node as for vectors of words of many: V has +, ^ and RotateRight.
//
// What defines ISA_LANES, the instruction set of the functions, is included ahead of this.
#pragma once

#include "hash/kernels/Blake3.h"
#include "hash/kernels/Isa.h"

#include <utility>

namespace fyrn::kernels {
namespace {

// The word of the block that place i of a round takes: those of the round before, permuted.
constexpr int WordOfRound(int round, int i) {
    constexpr int permutation[16] = {2, 6, 3, 10, 7, 0, 4, 13, 1, 11, 12, 5, 9, 14, 15, 8};
    return round == 0 ? i : permutation[WordOfRound(round - 1, i)];
}

template <class V>
ISA_LANES ALWAYS_INLINE void Mix(V& a, V& b, V& c, V& d, V x, V y) {
    a = a + b + x;
    d = RotateRight<16>(d ^ a);
    c = c + d;
    b = RotateRight<12>(b ^ c);
    a = a + b + y;
    d = RotateRight<8>(d ^ a);
    c = c + d;
    b = RotateRight<7>(b ^ c);
}

template <int round, class V>
ISA_LANES ALWAYS_INLINE void Round(V (&v)[16], const V (&m)[16]) {
    Mix(v[0], v[4], v[8], v[12], m[WordOfRound(round, 0)], m[WordOfRound(round, 1)]);
    Mix(v[1], v[5], v[9], v[13], m[WordOfRound(round, 2)], m[WordOfRound(round, 3)]);
    Mix(v[2], v[6], v[10], v[14], m[WordOfRound(round, 4)], m[WordOfRound(round, 5)]);
    Mix(v[3], v[7], v[11], v[15], m[WordOfRound(round, 6)], m[WordOfRound(round, 7)]);
    Mix(v[0], v[5], v[10], v[15], m[WordOfRound(round, 8)], m[WordOfRound(round, 9)]);
    Mix(v[1], v[6], v[11], v[12], m[WordOfRound(round, 10)], m[WordOfRound(round, 11)]);
    Mix(v[2], v[7], v[8], v[13], m[WordOfRound(round, 12)], m[WordOfRound(round, 13)]);
    Mix(v[3], v[4], v[9], v[14], m[WordOfRound(round, 14)], m[WordOfRound(round, 15)]);
}

template <class V>
ISA_LANES ALWAYS_INLINE void SevenRounds(V (&v)[16], const V (&m)[16]) {
    Round<0>(v, m);
    Round<1>(v, m);
    Round<2>(v, m);
    Round<3>(v, m);
    Round<4>(v, m);
    Round<5>(v, m);
    Round<6>(v, m);
}

// The flags of a block of a node.
constexpr std::uint32_t FlagsOfBlock(Blake3Level level, std::size_t block, std::size_t blockCount) {
    if (level == Blake3Level::parents)
        return blake3_flag::parent;
    return (block == 0 ? blake3_flag::chunkStart : 0) | (block == blockCount - 1 ? blake3_flag::chunkEnd : 0);
}

constexpr std::size_t BlocksOfNode(Blake3Level level) {
    return level == Blake3Level::chunks ? blake3ChunkSize / blake3BlockSize : 1;
}

} // namespace
} // namespace fyrn::kernels
