// SPDX-License-Identifier: MIT
// RIPEMD-160 in plain C++: two lines of 80 steps that do not depend on each other, taken step by step in turn so that the
// processor works on both. Every index is known at compile time. The words of a line do not move: their names do, so slot
// (name - step) mod 5 holds the word that the standard calls A..E. After 80 steps all names are back.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Isa.h"
#include "hash/kernels/Ripemd160.h"

#include <bit>
#include <utility>

namespace fyrn::kernels {
namespace {

using Word = std::uint32_t;

struct Line {
    int words[80];     // the message word of each step
    int rotations[80]; // and its rotation
    Word constants[5]; // of each round of 16 steps
};

constexpr Line left = {
    {0,  1, 2,  3,  4, 5,  6,  7,  8, 9, 10, 11, 12, 13, 14, 15, 7, 4,  13, 1, 10, 6, 15, 3,  12, 0, 9,
     5,  2, 14, 11, 8, 3,  10, 14, 4, 9, 15, 8,  1,  2,  7,  0,  6, 13, 11, 5, 12, 1, 9,  11, 10, 0, 8,
     12, 4, 13, 3,  7, 15, 14, 5,  6, 2, 4,  0,  5,  9,  7,  12, 2, 10, 14, 1, 3,  8, 11, 6,  15, 13},
    {11, 14, 15, 12, 5,  8,  7,  9, 11, 13, 14, 15, 6,  7,  9, 8,  7,  6,  8,  13, 11, 9,  7,  15, 7,  12, 15,
     9,  11, 7,  13, 12, 11, 13, 6, 7,  14, 9,  13, 15, 14, 8, 13, 6,  5,  12, 7,  5,  11, 12, 14, 15, 14, 15,
     9,  8,  9,  14, 5,  6,  8,  6, 5,  12, 9,  15, 5,  11, 6, 8,  13, 12, 5,  12, 13, 14, 11, 8,  5,  6},
    {0, 0x5a827999, 0x6ed9eba1, 0x8f1bbcdc, 0xa953fd4e},
};
constexpr Line right = {
    {5,  14, 7, 0,  9, 2,  11, 4, 13, 6,  15, 8,  1,  10, 3, 12, 6, 11, 3, 7, 0,  13, 5, 10, 14, 15, 8,
     12, 4,  9, 1,  2, 15, 5,  1, 3,  7,  14, 6,  9,  11, 8, 12, 2, 10, 0, 4, 13, 8,  6, 4,  1,  3,  11,
     15, 0,  5, 12, 2, 13, 9,  7, 10, 14, 12, 15, 10, 4,  1, 5,  8, 7,  6, 2, 13, 14, 0, 3,  9,  11},
    {8, 9,  9,  11, 13, 15, 15, 5,  7,  7, 8, 11, 14, 14, 12, 6, 9,  13, 15, 7,  12, 8,  9,  11, 7,  7,  12,
     7, 6,  15, 13, 11, 9,  7,  15, 11, 8, 6, 6,  14, 12, 13, 5, 14, 13, 13, 7,  5,  15, 5,  8,  11, 14, 14,
     6, 14, 6,  9,  12, 9,  12, 5,  15, 8, 8, 5,  12, 9,  12, 5, 14, 6,  8,  13, 6,  5,  15, 13, 11, 11},
    {0x50a28be6, 0x5c4dd124, 0x6d703ef3, 0x7a6d76e9, 0},
};

// The function of a round of the left line; the right line takes them in the opposite order.
template <int round>
ALWAYS_INLINE Word Mix(Word x, Word y, Word z) {
    if constexpr (round == 0)
        return x ^ y ^ z;
    else if constexpr (round == 1)
        return z ^ (x & (y ^ z));
    else if constexpr (round == 2)
        return (x | ~y) ^ z;
    else if constexpr (round == 3)
        return y ^ (z & (x ^ y));
    else
        return x ^ (y | ~z);
}

template <const Line& line, int t, int round>
ALWAYS_INLINE void Step(Word (&s)[5], const Word (&m)[16]) {
    Word& a = s[(80 - t) % 5];
    const Word b = s[(81 - t) % 5];
    Word& c = s[(82 - t) % 5];
    const Word d = s[(83 - t) % 5];
    const Word e = s[(84 - t) % 5];
    a += m[line.words[t]] + line.constants[t / 16];
    a = std::rotl(a + Mix<round>(b, c, d), line.rotations[t]) + e;
    c = std::rotl(c, 10);
}

template <int... t>
ALWAYS_INLINE void Steps(std::integer_sequence<int, t...>, Word (&l)[5], Word (&r)[5], const Word (&m)[16]) {
    ((Step<left, t, t / 16>(l, m), Step<right, t, 4 - t / 16>(r, m)), ...);
}

} // namespace

void Ripemd160_Blocks_Portable(std::uint32_t state[5], const std::uint8_t* blocks, std::size_t count) {
    for (; count != 0; --count, blocks += 64) {
        Word m[16];
        for (int i = 0; i < 16; ++i)
            m[i] = LoadLittle<Word>(blocks + 4 * i);
        Word l[5] = {state[0], state[1], state[2], state[3], state[4]};
        Word r[5] = {state[0], state[1], state[2], state[3], state[4]};
        Steps(std::make_integer_sequence<int, 80>{}, l, r, m);
        const Word first = state[1] + l[2] + r[3];
        state[1] = state[2] + l[3] + r[4];
        state[2] = state[3] + l[4] + r[0];
        state[3] = state[4] + l[0] + r[1];
        state[4] = state[0] + l[1] + r[2];
        state[0] = first;
    }
}

} // namespace fyrn::kernels
