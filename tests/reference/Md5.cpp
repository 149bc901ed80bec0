// SPDX-License-Identifier: MIT
#include "tests/reference/Md5.h"

#include <cmath>

namespace reference {
namespace {

using Word = std::uint32_t;

constexpr unsigned int rotations[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

Word Auxiliary(unsigned int round, Word x, Word y, Word z) {
    switch (round) {
    case 0:
        return (x & y) | (~x & z);
    case 1:
        return (x & z) | (y & ~z);
    case 2:
        return x ^ y ^ z;
    default:
        return y ^ (x | ~z);
    }
}

// The word that a step takes from the block.
unsigned int WordIndex(unsigned int step) {
    constexpr unsigned int factor[4] = {1, 5, 3, 7};
    constexpr unsigned int first[4] = {0, 1, 5, 0};
    return (first[step / 16] + factor[step / 16] * (step % 16)) % 16;
}

// T[i]: the integer part of 4294967296 times abs(sin(i)).
Word SineConstant(unsigned int step) {
    return static_cast<Word>(std::floor(4294967296.0 * std::fabs(std::sin(step + 1.0))));
}

Word RotateLeft(Word word, unsigned int by) {
    return word << by | word >> (32 - by);
}

} // namespace

void Md5Compress(State32x4& state, const std::uint8_t* block) {
    State32x4 s = state;
    for (unsigned int step = 0; step < 64; ++step) {
        const unsigned int round = step / 16;
        const Word sum = s[0] + Auxiliary(round, s[1], s[2], s[3]) +
                         LittleEndianWord(block, WordIndex(step)) + SineConstant(step);
        s = {s[3], s[1] + RotateLeft(sum, rotations[round][step % 4]), s[1], s[2]};
    }
    for (unsigned int i = 0; i < 4; ++i)
        state[i] += s[i];
}

helpers::Bytes Md5WithLength(std::span<const std::uint8_t> message, std::uint64_t statedBytes) {
    State32x4 state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    const helpers::Bytes padded = PadLittleEndian(message, statedBytes);
    for (std::size_t at = 0; at < padded.size(); at += 64)
        Md5Compress(state, padded.data() + at);
    return LittleEndianDigest(state);
}

helpers::Bytes Md5(std::span<const std::uint8_t> message) {
    return Md5WithLength(message, message.size());
}

} // namespace reference
