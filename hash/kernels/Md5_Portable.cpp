// SPDX-License-Identifier: MIT
// MD5 in plain C++. The four rounds are unrolled, with the sums arranged so that the value computed last in
// the step before is used as late as possible: the chain through b is all that limits the speed.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Md5.h"

#include <bit>

namespace fyrn::kernels {
namespace {

using Word = std::uint32_t;

inline Word F(Word x, Word y, Word z) {
    return z ^ (x & (y ^ z));
}
inline Word H(Word x, Word y, Word z) {
    return x ^ (y ^ z);
}
inline Word I(Word x, Word y, Word z) {
    return y ^ (x | ~z);
}

// One step: a = b + rotate(a + f + m + k, s).
#define STEP(f, a, b, c, d, m, k, s)                                                                         \
    a += m + k;                                                                                              \
    a = std::rotl(a + f(b, c, d), s) + b;

// The second round's function is (x & z) | (y & ~z); its halves share no bit, so they are added one by one,
// the half that does not wait for x first.
#define STEP_G(a, b, c, d, m, k, s)                                                                          \
    a += m + k;                                                                                              \
    a += c & ~d;                                                                                             \
    a = std::rotl(a + (b & d), s) + b;

} // namespace

void Md5_Blocks_Portable(std::uint32_t state[4], const std::uint8_t* blocks, std::size_t count) {
    Word a = state[0];
    Word b = state[1];
    Word c = state[2];
    Word d = state[3];
    for (; count != 0; --count, blocks += 64) {
        const Word oldA = a;
        const Word oldB = b;
        const Word oldC = c;
        const Word oldD = d;
        Word m[16];
        for (int i = 0; i < 16; ++i)
            m[i] = LoadLittle<Word>(blocks + 4 * i);

        STEP(F, a, b, c, d, m[0], 0xd76aa478, 7)
        STEP(F, d, a, b, c, m[1], 0xe8c7b756, 12)
        STEP(F, c, d, a, b, m[2], 0x242070db, 17)
        STEP(F, b, c, d, a, m[3], 0xc1bdceee, 22)
        STEP(F, a, b, c, d, m[4], 0xf57c0faf, 7)
        STEP(F, d, a, b, c, m[5], 0x4787c62a, 12)
        STEP(F, c, d, a, b, m[6], 0xa8304613, 17)
        STEP(F, b, c, d, a, m[7], 0xfd469501, 22)
        STEP(F, a, b, c, d, m[8], 0x698098d8, 7)
        STEP(F, d, a, b, c, m[9], 0x8b44f7af, 12)
        STEP(F, c, d, a, b, m[10], 0xffff5bb1, 17)
        STEP(F, b, c, d, a, m[11], 0x895cd7be, 22)
        STEP(F, a, b, c, d, m[12], 0x6b901122, 7)
        STEP(F, d, a, b, c, m[13], 0xfd987193, 12)
        STEP(F, c, d, a, b, m[14], 0xa679438e, 17)
        STEP(F, b, c, d, a, m[15], 0x49b40821, 22)

        STEP_G(a, b, c, d, m[1], 0xf61e2562, 5)
        STEP_G(d, a, b, c, m[6], 0xc040b340, 9)
        STEP_G(c, d, a, b, m[11], 0x265e5a51, 14)
        STEP_G(b, c, d, a, m[0], 0xe9b6c7aa, 20)
        STEP_G(a, b, c, d, m[5], 0xd62f105d, 5)
        STEP_G(d, a, b, c, m[10], 0x02441453, 9)
        STEP_G(c, d, a, b, m[15], 0xd8a1e681, 14)
        STEP_G(b, c, d, a, m[4], 0xe7d3fbc8, 20)
        STEP_G(a, b, c, d, m[9], 0x21e1cde6, 5)
        STEP_G(d, a, b, c, m[14], 0xc33707d6, 9)
        STEP_G(c, d, a, b, m[3], 0xf4d50d87, 14)
        STEP_G(b, c, d, a, m[8], 0x455a14ed, 20)
        STEP_G(a, b, c, d, m[13], 0xa9e3e905, 5)
        STEP_G(d, a, b, c, m[2], 0xfcefa3f8, 9)
        STEP_G(c, d, a, b, m[7], 0x676f02d9, 14)
        STEP_G(b, c, d, a, m[12], 0x8d2a4c8a, 20)

        STEP(H, a, b, c, d, m[5], 0xfffa3942, 4)
        STEP(H, d, a, b, c, m[8], 0x8771f681, 11)
        STEP(H, c, d, a, b, m[11], 0x6d9d6122, 16)
        STEP(H, b, c, d, a, m[14], 0xfde5380c, 23)
        STEP(H, a, b, c, d, m[1], 0xa4beea44, 4)
        STEP(H, d, a, b, c, m[4], 0x4bdecfa9, 11)
        STEP(H, c, d, a, b, m[7], 0xf6bb4b60, 16)
        STEP(H, b, c, d, a, m[10], 0xbebfbc70, 23)
        STEP(H, a, b, c, d, m[13], 0x289b7ec6, 4)
        STEP(H, d, a, b, c, m[0], 0xeaa127fa, 11)
        STEP(H, c, d, a, b, m[3], 0xd4ef3085, 16)
        STEP(H, b, c, d, a, m[6], 0x04881d05, 23)
        STEP(H, a, b, c, d, m[9], 0xd9d4d039, 4)
        STEP(H, d, a, b, c, m[12], 0xe6db99e5, 11)
        STEP(H, c, d, a, b, m[15], 0x1fa27cf8, 16)
        STEP(H, b, c, d, a, m[2], 0xc4ac5665, 23)

        STEP(I, a, b, c, d, m[0], 0xf4292244, 6)
        STEP(I, d, a, b, c, m[7], 0x432aff97, 10)
        STEP(I, c, d, a, b, m[14], 0xab9423a7, 15)
        STEP(I, b, c, d, a, m[5], 0xfc93a039, 21)
        STEP(I, a, b, c, d, m[12], 0x655b59c3, 6)
        STEP(I, d, a, b, c, m[3], 0x8f0ccc92, 10)
        STEP(I, c, d, a, b, m[10], 0xffeff47d, 15)
        STEP(I, b, c, d, a, m[1], 0x85845dd1, 21)
        STEP(I, a, b, c, d, m[8], 0x6fa87e4f, 6)
        STEP(I, d, a, b, c, m[15], 0xfe2ce6e0, 10)
        STEP(I, c, d, a, b, m[6], 0xa3014314, 15)
        STEP(I, b, c, d, a, m[13], 0x4e0811a1, 21)
        STEP(I, a, b, c, d, m[4], 0xf7537e82, 6)
        STEP(I, d, a, b, c, m[11], 0xbd3af235, 10)
        STEP(I, c, d, a, b, m[2], 0x2ad7d2bb, 15)
        STEP(I, b, c, d, a, m[9], 0xeb86d391, 21)

        a += oldA;
        b += oldB;
        c += oldC;
        d += oldD;
    }
    state[0] = a;
    state[1] = b;
    state[2] = c;
    state[3] = d;
}

} // namespace fyrn::kernels
