// SPDX-License-Identifier: MIT
// MD4 in plain C++. The three rounds are unrolled, with the sums arranged so that the value computed last in
// the step before is used as late as possible: the chain through b is all that limits the speed.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Md4.h"

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

// One step: a = rotate(a + f + m + k, s).
#define STEP(f, a, b, c, d, m, k, s)                                                                         \
    a += m + k;                                                                                              \
    a = std::rotl(a + f(b, c, d), s);

// The second round's function is the majority of x, y and z, the sum of y & z and x & (y ^ z), which share no
// bit; the half that does not wait for x is added first.
#define STEP_G(a, b, c, d, m, s)                                                                             \
    a += m + 0x5a827999;                                                                                     \
    a += c & d;                                                                                              \
    a = std::rotl(a + (b & (c ^ d)), s);

} // namespace

void Md4_Blocks_Portable(std::uint32_t state[4], const std::uint8_t* blocks, std::size_t count) {
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

        STEP(F, a, b, c, d, m[0], 0, 3)
        STEP(F, d, a, b, c, m[1], 0, 7)
        STEP(F, c, d, a, b, m[2], 0, 11)
        STEP(F, b, c, d, a, m[3], 0, 19)
        STEP(F, a, b, c, d, m[4], 0, 3)
        STEP(F, d, a, b, c, m[5], 0, 7)
        STEP(F, c, d, a, b, m[6], 0, 11)
        STEP(F, b, c, d, a, m[7], 0, 19)
        STEP(F, a, b, c, d, m[8], 0, 3)
        STEP(F, d, a, b, c, m[9], 0, 7)
        STEP(F, c, d, a, b, m[10], 0, 11)
        STEP(F, b, c, d, a, m[11], 0, 19)
        STEP(F, a, b, c, d, m[12], 0, 3)
        STEP(F, d, a, b, c, m[13], 0, 7)
        STEP(F, c, d, a, b, m[14], 0, 11)
        STEP(F, b, c, d, a, m[15], 0, 19)

        STEP_G(a, b, c, d, m[0], 3)
        STEP_G(d, a, b, c, m[4], 5)
        STEP_G(c, d, a, b, m[8], 9)
        STEP_G(b, c, d, a, m[12], 13)
        STEP_G(a, b, c, d, m[1], 3)
        STEP_G(d, a, b, c, m[5], 5)
        STEP_G(c, d, a, b, m[9], 9)
        STEP_G(b, c, d, a, m[13], 13)
        STEP_G(a, b, c, d, m[2], 3)
        STEP_G(d, a, b, c, m[6], 5)
        STEP_G(c, d, a, b, m[10], 9)
        STEP_G(b, c, d, a, m[14], 13)
        STEP_G(a, b, c, d, m[3], 3)
        STEP_G(d, a, b, c, m[7], 5)
        STEP_G(c, d, a, b, m[11], 9)
        STEP_G(b, c, d, a, m[15], 13)

        STEP(H, a, b, c, d, m[0], 0x6ed9eba1, 3)
        STEP(H, d, a, b, c, m[8], 0x6ed9eba1, 9)
        STEP(H, c, d, a, b, m[4], 0x6ed9eba1, 11)
        STEP(H, b, c, d, a, m[12], 0x6ed9eba1, 15)
        STEP(H, a, b, c, d, m[2], 0x6ed9eba1, 3)
        STEP(H, d, a, b, c, m[10], 0x6ed9eba1, 9)
        STEP(H, c, d, a, b, m[6], 0x6ed9eba1, 11)
        STEP(H, b, c, d, a, m[14], 0x6ed9eba1, 15)
        STEP(H, a, b, c, d, m[1], 0x6ed9eba1, 3)
        STEP(H, d, a, b, c, m[9], 0x6ed9eba1, 9)
        STEP(H, c, d, a, b, m[5], 0x6ed9eba1, 11)
        STEP(H, b, c, d, a, m[13], 0x6ed9eba1, 15)
        STEP(H, a, b, c, d, m[3], 0x6ed9eba1, 3)
        STEP(H, d, a, b, c, m[11], 0x6ed9eba1, 9)
        STEP(H, c, d, a, b, m[7], 0x6ed9eba1, 11)
        STEP(H, b, c, d, a, m[15], 0x6ed9eba1, 15)

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
