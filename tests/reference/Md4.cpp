// SPDX-License-Identifier: MIT
#include "tests/reference/Md4.h"

namespace reference {
namespace {

using Word = std::uint32_t;

constexpr unsigned int rotations[3][4] = {{3, 7, 11, 19}, {3, 5, 9, 13}, {3, 9, 11, 15}};
constexpr Word constants[3] = {0, 0x5a827999, 0x6ed9eba1};
constexpr unsigned int wordOrder[3][16] = {{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
                                           {0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15},
                                           {0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15}};

Word Auxiliary(unsigned int round, Word x, Word y, Word z) {
    switch (round) {
    case 0:
        return (x & y) | (~x & z);
    case 1:
        return (x & y) | (x & z) | (y & z);
    default:
        return x ^ y ^ z;
    }
}

Word RotateLeft(Word word, unsigned int by) {
    return word << by | word >> (32 - by);
}

} // namespace

void Md4Compress(State32x4& state, const std::uint8_t* block) {
    State32x4 s = state;
    for (unsigned int step = 0; step < 48; ++step) {
        const unsigned int round = step / 16;
        const Word sum = s[0] + Auxiliary(round, s[1], s[2], s[3]) +
                         LittleEndianWord(block, wordOrder[round][step % 16]) + constants[round];
        s = {s[3], RotateLeft(sum, rotations[round][step % 4]), s[1], s[2]};
    }
    for (unsigned int i = 0; i < 4; ++i)
        state[i] += s[i];
}

helpers::Bytes Md4WithLength(std::span<const std::uint8_t> message, std::uint64_t statedBytes) {
    State32x4 state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    const helpers::Bytes padded = PadLittleEndian(message, statedBytes);
    for (std::size_t at = 0; at < padded.size(); at += 64)
        Md4Compress(state, padded.data() + at);
    return LittleEndianDigest(state);
}

helpers::Bytes Md4(std::span<const std::uint8_t> message) {
    return Md4WithLength(message, message.size());
}

} // namespace reference
