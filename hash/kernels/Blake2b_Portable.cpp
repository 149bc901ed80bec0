// SPDX-License-Identifier: MIT
// BLAKE2b in plain C++: the twelve rounds unrolled, the sixteen working words local. The message words are
// read from the block where they are used: a load that is part of an addition costs less than a register.
#include "hash/kernels/Blake2b.h"
#include "hash/kernels/ByteOrder.h"

#include <bit>

namespace fyrn::kernels {
namespace {

using Word = std::uint64_t;

#define M(i) LoadLittle<Word>(block + 8 * (i))

// The mixing function G.
#define MIX(a, b, c, d, x, y)                                                                                \
    a += b + M(x);                                                                                           \
    d = std::rotr(d ^ a, 32);                                                                                \
    c += d;                                                                                                  \
    b = std::rotr(b ^ c, 24);                                                                                \
    a += b + M(y);                                                                                           \
    d = std::rotr(d ^ a, 16);                                                                                \
    c += d;                                                                                                  \
    b = std::rotr(b ^ c, 63);

// One round: the columns, then the diagonals, with the message words in the order of one line of SIGMA.
#define ROUND(s0, s1, s2, s3, s4, s5, s6, s7, s8, s9, s10, s11, s12, s13, s14, s15)                          \
    MIX(v0, v4, v8, v12, s0, s1)                                                                             \
    MIX(v1, v5, v9, v13, s2, s3)                                                                             \
    MIX(v2, v6, v10, v14, s4, s5)                                                                            \
    MIX(v3, v7, v11, v15, s6, s7)                                                                            \
    MIX(v0, v5, v10, v15, s8, s9)                                                                            \
    MIX(v1, v6, v11, v12, s10, s11)                                                                          \
    MIX(v2, v7, v8, v13, s12, s13)                                                                           \
    MIX(v3, v4, v9, v14, s14, s15)

void CompressBlock(Blake2bState& state, const std::uint8_t* block) {
    Word* const h = state.chain;
    const Word* const iv = blake2bInitialValues;
    Word v0 = h[0], v1 = h[1], v2 = h[2], v3 = h[3];
    Word v4 = h[4], v5 = h[5], v6 = h[6], v7 = h[7];
    Word v8 = iv[0], v9 = iv[1], v10 = iv[2], v11 = iv[3];
    Word v12 = iv[4] ^ state.counter[0], v13 = iv[5] ^ state.counter[1];
    Word v14 = iv[6] ^ state.flags[0], v15 = iv[7] ^ state.flags[1];

    ROUND(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15)
    ROUND(14, 10, 4, 8, 9, 15, 13, 6, 1, 12, 0, 2, 11, 7, 5, 3)
    ROUND(11, 8, 12, 0, 5, 2, 15, 13, 10, 14, 3, 6, 7, 1, 9, 4)
    ROUND(7, 9, 3, 1, 13, 12, 11, 14, 2, 6, 5, 10, 4, 0, 15, 8)
    ROUND(9, 0, 5, 7, 2, 4, 10, 15, 14, 1, 11, 12, 6, 8, 3, 13)
    ROUND(2, 12, 6, 10, 0, 11, 8, 3, 4, 13, 7, 5, 15, 14, 1, 9)
    ROUND(12, 5, 1, 15, 14, 13, 4, 10, 0, 7, 6, 3, 9, 2, 8, 11)
    ROUND(13, 11, 7, 14, 12, 1, 3, 9, 5, 0, 15, 4, 8, 6, 2, 10)
    ROUND(6, 15, 14, 9, 11, 3, 0, 8, 12, 2, 13, 7, 1, 4, 10, 5)
    ROUND(10, 2, 8, 4, 7, 6, 1, 5, 15, 11, 9, 14, 3, 12, 13, 0)
    ROUND(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15)
    ROUND(14, 10, 4, 8, 9, 15, 13, 6, 1, 12, 0, 2, 11, 7, 5, 3)

    h[0] ^= v0 ^ v8;
    h[1] ^= v1 ^ v9;
    h[2] ^= v2 ^ v10;
    h[3] ^= v3 ^ v11;
    h[4] ^= v4 ^ v12;
    h[5] ^= v5 ^ v13;
    h[6] ^= v6 ^ v14;
    h[7] ^= v7 ^ v15;
}

} // namespace

void Blake2b_Compress_Portable(Blake2bState& state, const std::uint8_t* blocks, std::size_t count,
                               std::uint64_t added) {
    for (; count != 0; --count, blocks += 128) {
        state.counter[0] += added;
        if (state.counter[0] < added)
            ++state.counter[1];
        CompressBlock(state, blocks);
    }
}

} // namespace fyrn::kernels
