// SPDX-License-Identifier: MIT
// The rounds of SM3, unrolled with every index known at compile time, so that state and schedule live in registers.
//
// A round replaces two of the eight words and rotates two others. The words do not move: their names do, so slot
// (name - round) mod 4 of each half holds the word that the standard calls A..D and E..H. After 64 rounds all names are
// back. The schedule is a ring of 16 words; round t needs words t and t + 4, and word t + 4 is made right before it.
#pragma once

#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Isa.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace fyrn::kernels::sm3 {

using Word = std::uint32_t;

// The constant of a round, already rotated by the round's number.
constexpr Word Constant(int t) {
    return std::rotl(t < 16 ? Word{0x79cc4519} : Word{0x7a879d8a}, t % 32);
}

// Majority: the two halves share no bit, so their sum is their union.
template <int t>
ALWAYS_INLINE Word FunctionF(Word x, Word y, Word z) {
    return t < 16 ? x ^ y ^ z : (x & y) + (z & (x ^ y));
}
template <int t>
ALWAYS_INLINE Word FunctionG(Word x, Word y, Word z) {
    return t < 16 ? x ^ y ^ z : z ^ (x & (y ^ z));
}
ALWAYS_INLINE Word Permute0(Word x) {
    return x ^ std::rotl(x, 9) ^ std::rotl(x, 17);
}
ALWAYS_INLINE Word Permute1(Word x) {
    return x ^ std::rotl(x, 15) ^ std::rotl(x, 23);
}

// Makes word t of the schedule, t >= 16, in the place of word t - 16.
template <int t>
ALWAYS_INLINE void Expand(Word (&m)[16]) {
    m[t & 15] = Permute1(m[t & 15] ^ m[(t - 9) & 15] ^ std::rotl(m[(t - 3) & 15], 15)) ^
                std::rotl(m[(t - 13) & 15], 7) ^ m[(t - 6) & 15];
}

template <int t>
ALWAYS_INLINE void Round(Word (&low)[4], Word (&high)[4], Word (&m)[16]) {
    if constexpr (t >= 12)
        Expand<t + 4>(m);
    Word& a = low[(0 - t) & 3];
    Word& b = low[(1 - t) & 3];
    Word& c = low[(2 - t) & 3];
    Word& d = low[(3 - t) & 3];
    Word& e = high[(0 - t) & 3];
    Word& f = high[(1 - t) & 3];
    Word& g = high[(2 - t) & 3];
    Word& h = high[(3 - t) & 3];
    const Word a12 = std::rotl(a, 12);
    const Word s1 = std::rotl(a12 + (e + Constant(t)), 7);
    d += FunctionF<t>(a, b, c) + (m[t & 15] ^ m[(t + 4) & 15]) + (s1 ^ a12);
    h = Permute0(h + m[t & 15] + FunctionG<t>(e, f, g) + s1);
    b = std::rotl(b, 9);
    f = std::rotl(f, 19);
}

template <int... t>
ALWAYS_INLINE void Rounds(std::integer_sequence<int, t...>, Word (&low)[4], Word (&high)[4], Word (&m)[16]) {
    (Round<t>(low, high, m), ...);
}

ALWAYS_INLINE void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
    for (; count != 0; --count, blocks += 64) {
        Word low[4] = {state[0], state[1], state[2], state[3]};
        Word high[4] = {state[4], state[5], state[6], state[7]};
        Word m[16];
        for (int i = 0; i < 16; ++i)
            m[i] = LoadBig<Word>(blocks + 4 * i);
        Rounds(std::make_integer_sequence<int, 64>{}, low, high, m);
        for (int i = 0; i < 4; ++i) {
            state[i] ^= low[i];
            state[4 + i] ^= high[i];
        }
    }
}

} // namespace fyrn::kernels::sm3
