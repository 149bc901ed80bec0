// SPDX-License-Identifier: MIT
// SHA-512 in plain C++. The message schedule is a ring of 16 words that is brought forward one word per round,
// right before the round that uses it.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Sha512.h"

#include <bit>

namespace fyrn::kernels {

const std::uint64_t sha512RoundConstants[80] = {
    0x428a2f98d728ae22, 0x7137449123ef65cd, 0xb5c0fbcfec4d3b2f, 0xe9b5dba58189dbbc, 0x3956c25bf348b538,
    0x59f111f1b605d019, 0x923f82a4af194f9b, 0xab1c5ed5da6d8118, 0xd807aa98a3030242, 0x12835b0145706fbe,
    0x243185be4ee4b28c, 0x550c7dc3d5ffb4e2, 0x72be5d74f27b896f, 0x80deb1fe3b1696b1, 0x9bdc06a725c71235,
    0xc19bf174cf692694, 0xe49b69c19ef14ad2, 0xefbe4786384f25e3, 0x0fc19dc68b8cd5b5, 0x240ca1cc77ac9c65,
    0x2de92c6f592b0275, 0x4a7484aa6ea6e483, 0x5cb0a9dcbd41fbd4, 0x76f988da831153b5, 0x983e5152ee66dfab,
    0xa831c66d2db43210, 0xb00327c898fb213f, 0xbf597fc7beef0ee4, 0xc6e00bf33da88fc2, 0xd5a79147930aa725,
    0x06ca6351e003826f, 0x142929670a0e6e70, 0x27b70a8546d22ffc, 0x2e1b21385c26c926, 0x4d2c6dfc5ac42aed,
    0x53380d139d95b3df, 0x650a73548baf63de, 0x766a0abb3c77b2a8, 0x81c2c92e47edaee6, 0x92722c851482353b,
    0xa2bfe8a14cf10364, 0xa81a664bbc423001, 0xc24b8b70d0f89791, 0xc76c51a30654be30, 0xd192e819d6ef5218,
    0xd69906245565a910, 0xf40e35855771202a, 0x106aa07032bbd1b8, 0x19a4c116b8d2d0c8, 0x1e376c085141ab53,
    0x2748774cdf8eeb99, 0x34b0bcb5e19b48a8, 0x391c0cb3c5c95a63, 0x4ed8aa4ae3418acb, 0x5b9cca4f7763e373,
    0x682e6ff3d6b2b8a3, 0x748f82ee5defb2fc, 0x78a5636f43172f60, 0x84c87814a1f0ab72, 0x8cc702081a6439ec,
    0x90befffa23631e28, 0xa4506cebde82bde9, 0xbef9a3f7b2c67915, 0xc67178f2e372532b, 0xca273eceea26619c,
    0xd186b8c721c0c207, 0xeada7dd6cde0eb1e, 0xf57d4f7fee6ed178, 0x06f067aa72176fba, 0x0a637dc5a2c898a6,
    0x113f9804bef90dae, 0x1b710b35131c471b, 0x28db77f523047d84, 0x32caab7b40c72493, 0x3c9ebe0a15c9bebc,
    0x431d67c49c100d4c, 0x4cc5d4becb3e42b6, 0x597f299cfc657e2a, 0x5fcb6fab3ad6faec, 0x6c44198c4a475817,
};

namespace {

using Word = std::uint64_t;

inline Word Choose(Word x, Word y, Word z) {
    return z ^ (x & (y ^ z));
}
inline Word BigSigma0(Word x) {
    return std::rotr(x, 28) ^ std::rotr(x, 34) ^ std::rotr(x, 39);
}
inline Word BigSigma1(Word x) {
    return std::rotr(x, 14) ^ std::rotr(x, 18) ^ std::rotr(x, 41);
}
inline Word SmallSigma0(Word x) {
    return std::rotr(x, 1) ^ std::rotr(x, 8) ^ (x >> 7);
}
inline Word SmallSigma1(Word x) {
    return std::rotr(x, 19) ^ std::rotr(x, 61) ^ (x >> 6);
}

// One round. The majority of a, b and c is b ^ ((a ^ b) & (b ^ c)), and a ^ b is the next round's b ^ c. The
// sums take the value computed last in the round before as late as possible.
#define ROUND(t, a, b, c, d, e, f, g, h, w)                                                                  \
    h += (w) + sha512RoundConstants[t];                                                                      \
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

void Sha512_Blocks_Portable(std::uint64_t state[8], const std::uint8_t* blocks, std::size_t count) {
    Word a = state[0];
    Word b = state[1];
    Word c = state[2];
    Word d = state[3];
    Word e = state[4];
    Word f = state[5];
    Word g = state[6];
    Word h = state[7];
    for (; count != 0; --count, blocks += 128) {
        Word m[16];
        for (int i = 0; i < 16; ++i)
            m[i] = LoadBig<Word>(blocks + 8 * i);
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
        EIGHT_ROUNDS(NEXT, 64)
        EIGHT_ROUNDS(NEXT, 72)

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
