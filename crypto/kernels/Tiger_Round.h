// SPDX-License-Identifier: MIT
// The compression of one Tiger block, for given S-boxes.
//
// Three registers take turns. In every round one is xored with a message word, its four even bytes are
// looked up and subtracted from the next register, which the following round starts from, and its four odd
// bytes are looked up and added to the third. So the chain through the even bytes sets the pace: they come
// first, and their four words meet in two pairs. The key schedule between the passes does not depend on
// that chain.
#pragma once

#include "crypto/kernels/Tiger.h"

namespace kernels::tiger {

using Word = std::uint64_t;

template <unsigned int multiplier>
inline Word Times(Word value) {
    if constexpr (multiplier == 7)
        return (value << 3) - value;
    else
        return (value << (multiplier == 5 ? 2 : 3)) + value;
}

inline Word Box(const TigerBoxes& boxes, int number, Word value, int byte) {
    return boxes.box[number][value >> 8 * byte & 0xff];
}

template <unsigned int multiplier>
inline void Round(const TigerBoxes& boxes, Word& a, Word& b, Word& c, Word message) {
    c ^= message;
    const Word even =
        (Box(boxes, 0, c, 0) ^ Box(boxes, 1, c, 2)) ^ (Box(boxes, 2, c, 4) ^ Box(boxes, 3, c, 6));
    a -= even;
    const Word odd =
        (Box(boxes, 3, c, 1) ^ Box(boxes, 2, c, 3)) ^ (Box(boxes, 1, c, 5) ^ Box(boxes, 0, c, 7));
    b = Times<multiplier>(b + odd);
}

template <unsigned int multiplier>
inline void Pass(const TigerBoxes& boxes, Word& a, Word& b, Word& c, const Word x[8]) {
    Round<multiplier>(boxes, a, b, c, x[0]);
    Round<multiplier>(boxes, b, c, a, x[1]);
    Round<multiplier>(boxes, c, a, b, x[2]);
    Round<multiplier>(boxes, a, b, c, x[3]);
    Round<multiplier>(boxes, b, c, a, x[4]);
    Round<multiplier>(boxes, c, a, b, x[5]);
    Round<multiplier>(boxes, a, b, c, x[6]);
    Round<multiplier>(boxes, b, c, a, x[7]);
}

inline void KeySchedule(Word x[8]) {
    x[0] -= x[7] ^ 0xa5a5a5a5a5a5a5a5;
    x[1] ^= x[0];
    x[2] += x[1];
    x[3] -= x[2] ^ (~x[1] << 19);
    x[4] ^= x[3];
    x[5] += x[4];
    x[6] -= x[5] ^ (~x[4] >> 23);
    x[7] ^= x[6];
    x[0] += x[7];
    x[1] -= x[0] ^ (~x[7] << 19);
    x[2] ^= x[1];
    x[3] += x[2];
    x[4] -= x[3] ^ (~x[2] >> 23);
    x[5] ^= x[4];
    x[6] += x[5];
    x[7] -= x[6] ^ 0x0123456789abcdef;
}

// Compresses the message words x, which it uses up, into the state.
inline void Compress(const TigerBoxes& boxes, Word& a, Word& b, Word& c, Word x[8]) {
    const Word oldA = a;
    const Word oldB = b;
    const Word oldC = c;
    Pass<5>(boxes, a, b, c, x);
    KeySchedule(x);
    Pass<7>(boxes, c, a, b, x);
    KeySchedule(x);
    Pass<9>(boxes, b, c, a, x);
    a ^= oldA;
    b -= oldB;
    c += oldC;
}

} // namespace kernels::tiger
