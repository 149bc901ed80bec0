// SPDX-License-Identifier: MIT
// Whirlpool in plain C++: eight tables of 2 KiB, rows of state and key in local words, ten unrolled rounds.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Whirlpool.h"
#include "hash/kernels/WhirlpoolTables.h"

namespace fyrn::kernels {
namespace {

using Word = std::uint64_t;

alignas(64) constexpr std::array<whirlpool::Table, 8> tables = whirlpool::DeriveTables();
constexpr std::array<Word, 10> roundConstants = whirlpool::DeriveRoundConstants();

static_assert(tables[0][0] == 0x18186018c07830d8);
static_assert(roundConstants[0] == 0x1823c6e887b8014f);

// Adds what one row contributes to all eight: byte t, counted from the highest, goes through table t into the
// row t places below. One row at a time, since only the sums and that row need registers, and two bytes at a
// time from its low end. The empty asm holds compilers to this order: left to themselves they shift the whole
// row anew for every byte and take all bytes of all rows apart first, which halves the speed.
#define ADD_ROW(row, x0, x1, x2, x3, x4, x5, x6, x7)                                                         \
    {                                                                                                        \
        Word rest = row;                                                                                     \
        ADD_TWO(rest, 6, x6, x7)                                                                             \
        ADD_TWO(rest, 4, x4, x5)                                                                             \
        ADD_TWO(rest, 2, x2, x3)                                                                             \
        ADD_TWO(rest, 0, x0, x1)                                                                             \
    }

#define ADD_TWO(rest, t, x, y)                                                                               \
    __asm__("" : "+r"(rest));                                                                                \
    y ^= tables[t + 1][rest & 0xff];                                                                         \
    x ^= tables[t][rest >> 8 & 0xff];                                                                        \
    rest >>= 16;                                                                                             \
    __asm__("" : "+r"(x));

#define ADD_ROWS(p)                                                                                          \
    ADD_ROW(p##0, x0, x1, x2, x3, x4, x5, x6, x7)                                                            \
    ADD_ROW(p##1, x1, x2, x3, x4, x5, x6, x7, x0)                                                            \
    ADD_ROW(p##2, x2, x3, x4, x5, x6, x7, x0, x1)                                                            \
    ADD_ROW(p##3, x3, x4, x5, x6, x7, x0, x1, x2)                                                            \
    ADD_ROW(p##4, x4, x5, x6, x7, x0, x1, x2, x3)                                                            \
    ADD_ROW(p##5, x5, x6, x7, x0, x1, x2, x3, x4)                                                            \
    ADD_ROW(p##6, x6, x7, x0, x1, x2, x3, x4, x5)                                                            \
    ADD_ROW(p##7, x7, x0, x1, x2, x3, x4, x5, x6)

// The next key, from the key and a constant; the next state, from the state and that key.
#define ROUND(r)                                                                                             \
    {                                                                                                        \
        Word x0 = roundConstants[r], x1 = 0, x2 = 0, x3 = 0, x4 = 0, x5 = 0, x6 = 0, x7 = 0;                 \
        ADD_ROWS(k)                                                                                          \
        k0 = x0, k1 = x1, k2 = x2, k3 = x3, k4 = x4, k5 = x5, k6 = x6, k7 = x7;                              \
    }                                                                                                        \
    {                                                                                                        \
        Word x0 = k0, x1 = k1, x2 = k2, x3 = k3, x4 = k4, x5 = k5, x6 = k6, x7 = k7;                         \
        ADD_ROWS(s)                                                                                          \
        s0 = x0, s1 = x1, s2 = x2, s3 = x3, s4 = x4, s5 = x5, s6 = x6, s7 = x7;                              \
    }

#define M(i) LoadBig<Word>(block + 8 * (i))

void CompressBlock(Word h[8], const std::uint8_t* block) {
    Word k0 = h[0], k1 = h[1], k2 = h[2], k3 = h[3], k4 = h[4], k5 = h[5], k6 = h[6], k7 = h[7];
    Word s0 = k0 ^ M(0), s1 = k1 ^ M(1), s2 = k2 ^ M(2), s3 = k3 ^ M(3);
    Word s4 = k4 ^ M(4), s5 = k5 ^ M(5), s6 = k6 ^ M(6), s7 = k7 ^ M(7);

    ROUND(0)
    ROUND(1)
    ROUND(2)
    ROUND(3)
    ROUND(4)
    ROUND(5)
    ROUND(6)
    ROUND(7)
    ROUND(8)
    ROUND(9)

    // Miyaguchi-Preneel: the cipher's result, the block and the old state.
    h[0] ^= s0 ^ M(0);
    h[1] ^= s1 ^ M(1);
    h[2] ^= s2 ^ M(2);
    h[3] ^= s3 ^ M(3);
    h[4] ^= s4 ^ M(4);
    h[5] ^= s5 ^ M(5);
    h[6] ^= s6 ^ M(6);
    h[7] ^= s7 ^ M(7);
}

} // namespace

void Whirlpool_Blocks_Portable(std::uint64_t state[8], const std::uint8_t* blocks, std::size_t count) {
    for (; count != 0; --count, blocks += 64)
        CompressBlock(state, blocks);
}

} // namespace fyrn::kernels
