// SPDX-License-Identifier: MIT
// SHA-256 in plain C++. The message schedule is a ring of 16 words that is brought forward one word per round,
// right before the round that uses it.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Sha256.h"

#include <bit>

namespace fyrn::kernels {

const std::uint32_t sha256RoundConstants[64] = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2,
};

namespace {

using Word = std::uint32_t;

inline Word Choose(Word x, Word y, Word z) {
    return z ^ (x & (y ^ z));
}
inline Word BigSigma0(Word x) {
    return std::rotr(x, 2) ^ std::rotr(x, 13) ^ std::rotr(x, 22);
}
inline Word BigSigma1(Word x) {
    return std::rotr(x, 6) ^ std::rotr(x, 11) ^ std::rotr(x, 25);
}
inline Word SmallSigma0(Word x) {
    return std::rotr(x, 7) ^ std::rotr(x, 18) ^ (x >> 3);
}
inline Word SmallSigma1(Word x) {
    return std::rotr(x, 17) ^ std::rotr(x, 19) ^ (x >> 10);
}

// One round. The majority of a, b and c is b ^ ((a ^ b) & (b ^ c)), and a ^ b is the next round's b ^ c. The
// sums take the value computed last in the round before as late as possible.
#define ROUND(t, a, b, c, d, e, f, g, h, w)                                                                  \
    h += (w) + sha256RoundConstants[t];                                                                      \
    h += Choose(e, f, g);                                                                                    \
    h += BigSigma1(e);                                                                                       \
    d += h;                                                                                                  \
    aXorB = a ^ b;                                                                                           \
    h += b ^ (aXorB & bXorC);                                                                                \
    h += BigSigma0(a);                                                                                       \
    bXorC = aXorB;

// Word t of the schedule, t >= 16, in the place of word t - 16.
#define NEXT(t)                                                                                              \
    (m[(t)&15] += SmallSigma0(m[((t) + 1) & 15]) + m[((t) + 9) & 15] + SmallSigma1(m[((t) + 14) & 15]))
#define FIRST(t) m[t]

// Eight rounds bring the names of the working variables back to their places.
#define EIGHT_ROUNDS(word, t)                                                                                \
    ROUND(t, a, b, c, d, e, f, g, h, word(t))                                                                \
    ROUND(t + 1, h, a, b, c, d, e, f, g, word(t + 1))                                                        \
    ROUND(t + 2, g, h, a, b, c, d, e, f, word(t + 2))                                                        \
    ROUND(t + 3, f, g, h, a, b, c, d, e, word(t + 3))                                                        \
    ROUND(t + 4, e, f, g, h, a, b, c, d, word(t + 4))                                                        \
    ROUND(t + 5, d, e, f, g, h, a, b, c, word(t + 5))                                                        \
    ROUND(t + 6, c, d, e, f, g, h, a, b, word(t + 6))                                                        \
    ROUND(t + 7, b, c, d, e, f, g, h, a, word(t + 7))

} // namespace

void Sha256_Blocks_Portable(std::uint32_t state[8], const std::uint8_t* blocks, std::size_t count) {
    Word a = state[0];
    Word b = state[1];
    Word c = state[2];
    Word d = state[3];
    Word e = state[4];
    Word f = state[5];
    Word g = state[6];
    Word h = state[7];
    for (; count != 0; --count, blocks += 64) {
        Word m[16];
        for (int i = 0; i < 16; ++i)
            m[i] = LoadBig<Word>(blocks + 4 * i);
        Word aXorB;
        Word bXorC = b ^ c;

        EIGHT_ROUNDS(FIRST, 0)
        EIGHT_ROUNDS(FIRST, 8)
        EIGHT_ROUNDS(NEXT, 16)
        EIGHT_ROUNDS(NEXT, 24)
        EIGHT_ROUNDS(NEXT, 32)
        EIGHT_ROUNDS(NEXT, 40)
        EIGHT_ROUNDS(NEXT, 48)
        EIGHT_ROUNDS(NEXT, 56)

        a = state[0] += a;
        b = state[1] += b;
        c = state[2] += c;
        d = state[3] += d;
        e = state[4] += e;
        f = state[5] += f;
        g = state[6] += g;
        h = state[7] += h;
    }
}

} // namespace fyrn::kernels
