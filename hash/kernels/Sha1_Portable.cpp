// SPDX-License-Identifier: MIT
// SHA-1 in plain C++. The message schedule is a ring of 16 words that is brought forward one word per round,
// right before the round that uses it.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Sha1.h"

#include <bit>

namespace fyrn::kernels {
namespace {

using Word = std::uint32_t;

inline Word Choose(Word x, Word y, Word z) {
    return z ^ (x & (y ^ z));
}
inline Word Parity(Word x, Word y, Word z) {
    return x ^ y ^ z;
}
// The two halves share no bit, so their sum is their union.
inline Word Majority(Word x, Word y, Word z) {
    return (y & z) + (x & (y ^ z));
}

// One round: e = rotate(a, 5) + f(b, c, d) + e + k + w, and b is rotated by 30.
#define ROUND(f, k, a, b, c, d, e, w)                                                                        \
    e += (w) + k;                                                                                            \
    e += f(b, c, d);                                                                                         \
    e += std::rotl(a, 5);                                                                                    \
    b = std::rotl(b, 30);

// Word t of the schedule, t >= 16, in the place of word t - 16.
#define NEXT(t)                                                                                              \
    (m[(t)&15] = std::rotl(m[((t) + 13) & 15] ^ m[((t) + 8) & 15] ^ m[((t) + 2) & 15] ^ m[(t)&15], 1))
#define FIRST(t) m[t]

// Five rounds bring the names of the working variables back to their places.
#define FIVE_ROUNDS(f, k, word, t)                                                                           \
    ROUND(f, k, a, b, c, d, e, word(t))                                                                      \
    ROUND(f, k, e, a, b, c, d, word(t + 1))                                                                  \
    ROUND(f, k, d, e, a, b, c, word(t + 2))                                                                  \
    ROUND(f, k, c, d, e, a, b, word(t + 3))                                                                  \
    ROUND(f, k, b, c, d, e, a, word(t + 4))

#define TWENTY_ROUNDS(f, k, t)                                                                               \
    FIVE_ROUNDS(f, k, NEXT, t)                                                                               \
    FIVE_ROUNDS(f, k, NEXT, t + 5)                                                                           \
    FIVE_ROUNDS(f, k, NEXT, t + 10)                                                                          \
    FIVE_ROUNDS(f, k, NEXT, t + 15)

} // namespace

void Sha1_Blocks_Portable(std::uint32_t state[5], const std::uint8_t* blocks, std::size_t count) {
    Word a = state[0];
    Word b = state[1];
    Word c = state[2];
    Word d = state[3];
    Word e = state[4];
    for (; count != 0; --count, blocks += 64) {
        Word m[16];
        for (int i = 0; i < 16; ++i)
            m[i] = LoadBig<Word>(blocks + 4 * i);

        FIVE_ROUNDS(Choose, 0x5a827999, FIRST, 0)
        FIVE_ROUNDS(Choose, 0x5a827999, FIRST, 5)
        FIVE_ROUNDS(Choose, 0x5a827999, FIRST, 10)
        ROUND(Choose, 0x5a827999, a, b, c, d, e, m[15])
        ROUND(Choose, 0x5a827999, e, a, b, c, d, NEXT(16))
        ROUND(Choose, 0x5a827999, d, e, a, b, c, NEXT(17))
        ROUND(Choose, 0x5a827999, c, d, e, a, b, NEXT(18))
        ROUND(Choose, 0x5a827999, b, c, d, e, a, NEXT(19))
        TWENTY_ROUNDS(Parity, 0x6ed9eba1, 20)
        TWENTY_ROUNDS(Majority, 0x8f1bbcdc, 40)
        TWENTY_ROUNDS(Parity, 0xca62c1d6, 60)

        a = state[0] += a;
        b = state[1] += b;
        c = state[2] += c;
        d = state[3] += d;
        e = state[4] += e;
    }
}

} // namespace fyrn::kernels
