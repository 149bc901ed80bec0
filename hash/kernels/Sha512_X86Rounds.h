// SPDX-License-Identifier: MIT
// What the kernels of SHA-512 share that have rotations which leave their source alone (BMI2) and the message schedule
// in vectors.
//
// The schedule is held in four vectors of four words. The four words after the last 16 are
//     sigma1(words 14..17) + words 9..12 + sigma0(words 1..4) + words 0..3,
// where the last two of words 14..17 are the first two of the result, so sigma1 is done two words at a time. They are
// made in the time of four rounds, stored with their constants added, and used 12 rounds later.
//
// All four places for integer instructions are busy all the time, and so their order decides. The one written here was
// found by trying many on a Zen 4 core: the chain from e to the next e goes first; the sum of the big sigma of a is
// left to the next round; nine statements of the schedule are spread over each round. It is 1.15 times as fast as
// the order that the compiler makes of it, which therefore is told to keep this one (CMakeLists.txt).
//
// A kernel includes this after it has defined ISA_SHA512, the instructions that it is compiled for, and SCHEDULE_1 to
// SCHEDULE_4, which bring the words 16..19 of the schedule into m0, the place of the words 0..3: the work for each of
// four rounds, as nine statements, separated by commas, with the variables of CompressBlocks.
#pragma once

#include "hash/kernels/Isa.h"
#include "hash/kernels/Sha512.h"

#include <immintrin.h>

#include <bit>

namespace fyrn::kernels {
namespace {

using Word = std::uint64_t;
using Words = __m256i; // four words of the schedule
using TwoWords = __m128i;

ISA_SHA512 ALWAYS_INLINE Words LoadWords(const std::uint8_t* bytes) {
    const Words bigEndian =
        _mm256_broadcastsi128_si256(_mm_set_epi64x(0x08090a0b0c0d0e0f, 0x0001020304050607));
    return _mm256_shuffle_epi8(_mm256_loadu_si256(reinterpret_cast<const Words*>(bytes)), bigEndian);
}

ISA_SHA512 ALWAYS_INLINE void StoreWithConstants(Word* wk, Words words, int t) {
    const Words constants = _mm256_loadu_si256(reinterpret_cast<const Words*>(sha512RoundConstants + t));
    _mm256_store_si256(reinterpret_cast<Words*>(wk), _mm256_add_epi64(words, constants));
}

#define NO_SCHEDULE , , , , , , , ,

// One round, with wk[i] the word and its constant, and nine statements v0 to v8 of the schedule. The majority is as in
// the portable kernel; the halves of the choice share no bit and are added one by one.
#define ROUND_WITH(a, b, c, d, e, f, g, h, i, v0, v1, v2, v3, v4, v5, v6, v7, v8)                            \
    a += sigmaOfA;                                                                                           \
    v0;                                                                                                      \
    choice = e & f;                                                                                          \
    part = g & ~e;                                                                                           \
    v1;                                                                                                      \
    s = std::rotr(e, 41);                                                                                    \
    h += wk[i];                                                                                              \
    u = std::rotr(e, 18);                                                                                    \
    v2;                                                                                                      \
    s ^= u;                                                                                                  \
    h += part;                                                                                               \
    v3;                                                                                                      \
    u = std::rotr(e, 14);                                                                                    \
    s ^= u;                                                                                                  \
    h += choice;                                                                                             \
    v4;                                                                                                      \
    aXorB = a ^ b;                                                                                           \
    q = std::rotr(a, 34);                                                                                    \
    v5;                                                                                                      \
    h += s;                                                                                                  \
    p = std::rotr(a, 28);                                                                                    \
    bXorC &= aXorB;                                                                                          \
    v6;                                                                                                      \
    d += h;                                                                                                  \
    p ^= q;                                                                                                  \
    v7;                                                                                                      \
    bXorC ^= b;                                                                                              \
    h += bXorC;                                                                                              \
    q = std::rotr(a, 39);                                                                                    \
    v8;                                                                                                      \
    sigmaOfA = p ^ q;                                                                                        \
    bXorC = aXorB;

#define ROUND(...) ROUND_WITH(__VA_ARGS__)

#define FOUR_ROUNDS(a, b, c, d, e, f, g, h, i)                                                               \
    ROUND(a, b, c, d, e, f, g, h, i, NO_SCHEDULE)                                                            \
    ROUND(h, a, b, c, d, e, f, g, i + 1, NO_SCHEDULE)                                                        \
    ROUND(g, h, a, b, c, d, e, f, i + 2, NO_SCHEDULE)                                                        \
    ROUND(f, g, h, a, b, c, d, e, i + 3, NO_SCHEDULE)

#define FOUR_ROUNDS_AND_WORDS(a, b, c, d, e, f, g, h, i, m0, m1, m2, m3)                                     \
    ROUND(a, b, c, d, e, f, g, h, i, SCHEDULE_1(m0, m1, m2, m3))                                             \
    ROUND(h, a, b, c, d, e, f, g, i + 1, SCHEDULE_2(m0, m1, m2, m3))                                         \
    ROUND(g, h, a, b, c, d, e, f, i + 2, SCHEDULE_3(m0, m1, m2, m3))                                         \
    ROUND(f, g, h, a, b, c, d, e, i + 3, SCHEDULE_4(m0, m1, m2, m3))

// Compresses blocks as Sha512Blocks does.
ISA_SHA512 ALWAYS_INLINE void CompressBlocks(std::uint64_t state[8], const std::uint8_t* blocks,
                                             std::size_t count) {
    Word a = state[0];
    Word b = state[1];
    Word c = state[2];
    Word d = state[3];
    Word e = state[4];
    Word f = state[5];
    Word g = state[6];
    Word h = state[7];
    [[maybe_unused]] const Words rotateBy8 =
        _mm256_broadcastsi128_si256(_mm_set_epi64x(0x080f0e0d0c0b0a09, 0x0007060504030201));
    for (; count != 0; --count, blocks += 128) {
        alignas(32) Word wk[16];
        Words m0 = LoadWords(blocks);
        Words m1 = LoadWords(blocks + 32);
        Words m2 = LoadWords(blocks + 64);
        Words m3 = LoadWords(blocks + 96);
        StoreWithConstants(wk, m0, 0);
        StoreWithConstants(wk + 4, m1, 4);
        StoreWithConstants(wk + 8, m2, 8);
        StoreWithConstants(wk + 12, m3, 12);
        Word aXorB;
        Word bXorC = b ^ c;
        Word sigmaOfA = 0;
        Word part, choice, s, u, p, q;
        Words x, y, z, w;
        TwoWords j, k, l, n, low;
        for (int t = 16; t < 80; t += 16) {
            FOUR_ROUNDS_AND_WORDS(a, b, c, d, e, f, g, h, 0, m0, m1, m2, m3)
            StoreWithConstants(wk, m0, t);
            FOUR_ROUNDS_AND_WORDS(e, f, g, h, a, b, c, d, 4, m1, m2, m3, m0)
            StoreWithConstants(wk + 4, m1, t + 4);
            FOUR_ROUNDS_AND_WORDS(a, b, c, d, e, f, g, h, 8, m2, m3, m0, m1)
            StoreWithConstants(wk + 8, m2, t + 8);
            FOUR_ROUNDS_AND_WORDS(e, f, g, h, a, b, c, d, 12, m3, m0, m1, m2)
            StoreWithConstants(wk + 12, m3, t + 12);
        }
        FOUR_ROUNDS(a, b, c, d, e, f, g, h, 0)
        FOUR_ROUNDS(e, f, g, h, a, b, c, d, 4)
        FOUR_ROUNDS(a, b, c, d, e, f, g, h, 8)
        FOUR_ROUNDS(e, f, g, h, a, b, c, d, 12)
        a = state[0] += a + sigmaOfA;
        b = state[1] += b;
        c = state[2] += c;
        d = state[3] += d;
        e = state[4] += e;
        f = state[5] += f;
        g = state[6] += g;
        h = state[7] += h;
    }
}

} // namespace
} // namespace fyrn::kernels
