// SPDX-License-Identifier: MIT
#include "tests/reference/Ripemd160.h"

#include "tests/reference/LittleEndianMessage.h"

#include <algorithm>
#include <string_view>

namespace reference {
namespace {

using Word = std::uint32_t;

// Message words and rotations, one letter a step: 'a' is 0, 'b' is 1 and so on.
constexpr std::string_view wordsLeft = "abcdefghijklmnop"
                                       "henbkgpdmajfcoli"
                                       "dkoejpibchagnlfm"
                                       "bjlkaimendhpofgc"
                                       "eafjhmckobdilgpn";
constexpr std::string_view wordsRight = "fohajclengpibkdm"
                                        "gldhanfkopimejbc"
                                        "pfbdhogjlimckaen"
                                        "igebdlpafmcnjhko"
                                        "mpkebfihgcnoadjl";
constexpr Word constantsLeft[] = {0, 0x5a827999, 0x6ed9eba1, 0x8f1bbcdc, 0xa953fd4e};
constexpr Word constantsRight[] = {0x50a28be6, 0x5c4dd124, 0x6d703ef3, 0x7a6d76e9, 0};
// Rotations by round and message word; the paper prints them in this order as well.
constexpr int rotations[5][16] = {{11, 14, 15, 12, 5, 8, 7, 9, 11, 13, 14, 15, 6, 7, 9, 8},
                                  {12, 13, 11, 15, 6, 9, 9, 7, 12, 15, 11, 13, 7, 8, 7, 7},
                                  {13, 15, 14, 11, 7, 7, 6, 8, 13, 14, 13, 12, 5, 5, 6, 9},
                                  {14, 11, 12, 14, 8, 6, 5, 5, 15, 12, 15, 14, 9, 9, 8, 6},
                                  {15, 12, 13, 13, 9, 5, 8, 6, 14, 11, 12, 11, 8, 6, 5, 5}};

Word RotateLeft(Word word, int by) {
    return word << by | word >> (32 - by);
}

Word F(int round, Word x, Word y, Word z) {
    switch (round) {
    case 0:
        return x ^ y ^ z;
    case 1:
        return (x & y) | (~x & z);
    case 2:
        return (x | ~y) ^ z;
    case 3:
        return (x & z) | (y & ~z);
    default:
        return x ^ (y | ~z);
    }
}

Ripemd160State RunLine(Ripemd160State s, const std::uint8_t* block, std::string_view words,
                       const Word (&constants)[5], bool isRight) {
    for (int step = 0; step < 80; ++step) {
        const int round = step / 16;
        const auto word = static_cast<unsigned int>(words[static_cast<std::size_t>(step)] - 'a');
        const Word sum = s[0] + F(isRight ? 4 - round : round, s[1], s[2], s[3]) +
                         LittleEndianWord(block, word) + constants[round];
        s = {s[4], RotateLeft(sum, rotations[round][word]) + s[4], s[1], RotateLeft(s[2], 10), s[3]};
    }
    return s;
}

} // namespace

void Ripemd160Compress(Ripemd160State& state, const std::uint8_t* block) {
    const Ripemd160State l = RunLine(state, block, wordsLeft, constantsLeft, false);
    const Ripemd160State r = RunLine(state, block, wordsRight, constantsRight, true);
    state = {state[1] + l[2] + r[3], state[2] + l[3] + r[4], state[3] + l[4] + r[0], state[4] + l[0] + r[1],
             state[0] + l[1] + r[2]};
}

helpers::Bytes Ripemd160(std::span<const std::uint8_t> message) {
    Ripemd160State state = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
    const helpers::Bytes padded = PadLittleEndian(message, message.size());
    for (std::size_t at = 0; at < padded.size(); at += 64)
        Ripemd160Compress(state, padded.data() + at);
    helpers::Bytes digest;
    for (const Word word : state)
        for (int shift = 0; shift < 32; shift += 8)
            digest.push_back(static_cast<std::uint8_t>(word >> shift));
    return digest;
}

} // namespace reference
