// SPDX-License-Identifier: MIT
// The compression of one Tiger block, for given S-boxes.
//
// Three registers take turns. In every round one is xored with a message word, its four even bytes are looked
// up and subtracted from the next register, which the following round starts from, and its four odd bytes are
// looked up and added to the third. So the chain through the even bytes sets the pace: they come first, and
// their four words meet in two pairs. How they are taken out of the word is up to the kernel: a type EvenBytes
// with At16, At32 and At48. The key schedule between the passes does not depend on that chain.
#pragma once

#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Isa.h"
#include "hash/kernels/Tiger.h"

namespace fyrn::kernels::tiger {

using Word = std::uint64_t;

template <unsigned int multiplier>
ALWAYS_INLINE Word Times(Word value) {
    if constexpr (multiplier == 7)
        return (value << 3) - value;
    else
        return (value << (multiplier == 5 ? 2 : 3)) + value;
}

// The bytes at bits 16, 32 and 48 by shifting and masking, as every processor can.
struct ShiftedBytes {
    static Word At16(Word value) { return value >> 16 & 0xff; }
    static Word At32(Word value) { return value >> 32 & 0xff; }
    static Word At48(Word value) { return value >> 48 & 0xff; }
};

template <unsigned int multiplier, class EvenBytes>
ALWAYS_INLINE void Round(const TigerBoxes& boxes, const EvenBytes& bytes, Word& a, Word& b, Word& c,
                         Word message) {
    const auto& box = boxes.box;
    c ^= message;
    a -= (box[0][c & 0xff] ^ box[1][bytes.At16(c)]) ^ (box[2][bytes.At32(c)] ^ box[3][bytes.At48(c)]);
    const Word low = c & 0xffffffff;
    const Word high = c >> 32;
    const Word odd =
        (box[3][low >> 8 & 0xff] ^ box[2][low >> 24]) ^ (box[1][high >> 8 & 0xff] ^ box[0][high >> 24]);
    b = Times<multiplier>(b + odd);
}

template <unsigned int multiplier, class EvenBytes>
ALWAYS_INLINE void Pass(const TigerBoxes& boxes, const EvenBytes& bytes, Word& a, Word& b, Word& c,
                        const Word x[8]) {
    Round<multiplier>(boxes, bytes, a, b, c, x[0]);
    Round<multiplier>(boxes, bytes, b, c, a, x[1]);
    Round<multiplier>(boxes, bytes, c, a, b, x[2]);
    Round<multiplier>(boxes, bytes, a, b, c, x[3]);
    Round<multiplier>(boxes, bytes, b, c, a, x[4]);
    Round<multiplier>(boxes, bytes, c, a, b, x[5]);
    Round<multiplier>(boxes, bytes, a, b, c, x[6]);
    Round<multiplier>(boxes, bytes, b, c, a, x[7]);
}

ALWAYS_INLINE void KeySchedule(Word x[8]) {
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
template <class EvenBytes>
ALWAYS_INLINE void Compress(const TigerBoxes& boxes, const EvenBytes& bytes, Word& a, Word& b, Word& c,
                            Word x[8]) {
    const Word oldA = a;
    const Word oldB = b;
    const Word oldC = c;
    Pass<5>(boxes, bytes, a, b, c, x);
    KeySchedule(x);
    Pass<7>(boxes, bytes, c, a, b, x);
    KeySchedule(x);
    Pass<9>(boxes, bytes, b, c, a, x);
    a ^= oldA;
    b -= oldB;
    c += oldC;
}

// Compresses whole blocks, the state in registers from the first block to the last.
template <class EvenBytes>
ALWAYS_INLINE void CompressBlocks(const EvenBytes& bytes, std::uint64_t state[3], const std::uint8_t* blocks,
                                  std::size_t count) {
    const TigerBoxes& boxes = TigerSBoxes();
    Word a = state[0];
    Word b = state[1];
    Word c = state[2];
    for (; count != 0; --count, blocks += 64) {
        Word x[8];
        for (int i = 0; i < 8; ++i)
            x[i] = LoadLittle<Word>(blocks + 8 * i);
        Compress(boxes, bytes, a, b, c, x);
    }
    state[0] = a;
    state[1] = b;
    state[2] = c;
}

} // namespace fyrn::kernels::tiger
