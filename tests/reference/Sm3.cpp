// SPDX-License-Identifier: MIT
#include "tests/reference/Sm3.h"

namespace reference {
namespace {

using Word = std::uint32_t;

Word RotateLeft(Word word, int by) {
    by %= 32;
    return by == 0 ? word : word << by | word >> (32 - by);
}
Word P0(Word x) {
    return x ^ RotateLeft(x, 9) ^ RotateLeft(x, 17);
}
Word P1(Word x) {
    return x ^ RotateLeft(x, 15) ^ RotateLeft(x, 23);
}

} // namespace

void Sm3Compress(Sm3State& state, const std::uint8_t* block) {
    Word w[68];
    for (int j = 0; j < 16; ++j)
        w[j] = Word{block[4 * j]} << 24 | Word{block[4 * j + 1]} << 16 | Word{block[4 * j + 2]} << 8 |
               Word{block[4 * j + 3]};
    for (int j = 16; j < 68; ++j)
        w[j] = P1(w[j - 16] ^ w[j - 9] ^ RotateLeft(w[j - 3], 15)) ^ RotateLeft(w[j - 13], 7) ^ w[j - 6];

    auto [a, b, c, d, e, f, g, h] = state;
    for (int j = 0; j < 64; ++j) {
        const Word t = j < 16 ? 0x79cc4519 : 0x7a879d8a;
        const Word ff = j < 16 ? a ^ b ^ c : (a & b) | (a & c) | (b & c);
        const Word gg = j < 16 ? e ^ f ^ g : (e & f) | (~e & g);
        const Word ss1 = RotateLeft(RotateLeft(a, 12) + e + RotateLeft(t, j), 7);
        const Word ss2 = ss1 ^ RotateLeft(a, 12);
        const Word tt1 = ff + d + ss2 + (w[j] ^ w[j + 4]);
        const Word tt2 = gg + h + ss1 + w[j];
        d = c;
        c = RotateLeft(b, 9);
        b = a;
        a = tt1;
        h = g;
        g = RotateLeft(f, 19);
        f = e;
        e = P0(tt2);
    }
    const Sm3State result = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < state.size(); ++i)
        state[i] ^= result[i];
}

helpers::Bytes Sm3(std::span<const std::uint8_t> message) {
    helpers::Bytes padded(message.begin(), message.end());
    padded.push_back(0x80);
    while (padded.size() % 64 != 56)
        padded.push_back(0);
    const std::uint64_t bits = std::uint64_t{message.size()} * 8;
    for (int shift = 56; shift >= 0; shift -= 8)
        padded.push_back(static_cast<std::uint8_t>(bits >> shift));

    Sm3State state = {0x7380166f, 0x4914b2b9, 0x172442d7, 0xda8a0600,
                      0xa96f30bc, 0x163138aa, 0xe38dee4d, 0xb0fb0e4e};
    for (std::size_t at = 0; at < padded.size(); at += 64)
        Sm3Compress(state, padded.data() + at);
    helpers::Bytes digest;
    for (const Word word : state)
        for (int shift = 24; shift >= 0; shift -= 8)
            digest.push_back(static_cast<std::uint8_t>(word >> shift));
    return digest;
}

} // namespace reference
