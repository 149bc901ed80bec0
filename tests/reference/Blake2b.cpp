// SPDX-License-Identifier: MIT
#include "tests/reference/Blake2b.h"

#include <algorithm>
#include <bit>

namespace reference {
namespace {

using Word = std::uint64_t;

// RFC 7693, 2.6: the fractional parts of the square roots of the first eight primes.
constexpr std::array<Word, 8> iv = {0x6A09E667F3BCC908, 0xBB67AE8584CAA73B, 0x3C6EF372FE94F82B,
                                    0xA54FF53A5F1D36F1, 0x510E527FADE682D1, 0x9B05688C2B3E6C1F,
                                    0x1F83D9ABFB41BD6B, 0x5BE0CD19137E2179};

// RFC 7693, 2.7. Rounds 10 and 11 use lines 0 and 1 again.
constexpr int sigma[10][16] = {{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
                               {14, 10, 4, 8, 9, 15, 13, 6, 1, 12, 0, 2, 11, 7, 5, 3},
                               {11, 8, 12, 0, 5, 2, 15, 13, 10, 14, 3, 6, 7, 1, 9, 4},
                               {7, 9, 3, 1, 13, 12, 11, 14, 2, 6, 5, 10, 4, 0, 15, 8},
                               {9, 0, 5, 7, 2, 4, 10, 15, 14, 1, 11, 12, 6, 8, 3, 13},
                               {2, 12, 6, 10, 0, 11, 8, 3, 4, 13, 7, 5, 15, 14, 1, 9},
                               {12, 5, 1, 15, 14, 13, 4, 10, 0, 7, 6, 3, 9, 2, 8, 11},
                               {13, 11, 7, 14, 12, 1, 3, 9, 5, 0, 15, 4, 8, 6, 2, 10},
                               {6, 15, 14, 9, 11, 3, 0, 8, 12, 2, 13, 7, 1, 4, 10, 5},
                               {10, 2, 8, 4, 7, 6, 1, 5, 15, 11, 9, 14, 3, 12, 13, 0}};

void Mix(Word (&v)[16], int a, int b, int c, int d, Word x, Word y) {
    v[a] = v[a] + v[b] + x;
    v[d] = std::rotr(v[d] ^ v[a], 32);
    v[c] = v[c] + v[d];
    v[b] = std::rotr(v[b] ^ v[c], 24);
    v[a] = v[a] + v[b] + y;
    v[d] = std::rotr(v[d] ^ v[a], 16);
    v[c] = v[c] + v[d];
    v[b] = std::rotr(v[b] ^ v[c], 63);
}

} // namespace

void Blake2bCounter::Add(std::uint64_t bytes) {
    low += bytes;
    high += low < bytes ? 1 : 0;
}

void Blake2bCompress(std::array<Word, 8>& h, std::span<const std::uint8_t, 128> block, Blake2bCounter counter,
                     bool last) {
    Word m[16] = {};
    for (std::size_t i = 0; i < block.size(); ++i)
        m[i / 8] |= Word{block[i]} << (8 * (i % 8));

    Word v[16];
    std::copy(h.begin(), h.end(), v);
    std::copy(iv.begin(), iv.end(), v + 8);
    v[12] ^= counter.low;
    v[13] ^= counter.high;
    if (last)
        v[14] = ~v[14];

    for (int round = 0; round < 12; ++round) {
        const int* const s = sigma[round % 10];
        for (int i = 0; i < 4; ++i)
            Mix(v, i, 4 + i, 8 + i, 12 + i, m[s[2 * i]], m[s[2 * i + 1]]);
        for (int i = 0; i < 4; ++i)
            Mix(v, i, 4 + (i + 1) % 4, 8 + (i + 2) % 4, 12 + (i + 3) % 4, m[s[8 + 2 * i]], m[s[9 + 2 * i]]);
    }
    for (std::size_t i = 0; i < h.size(); ++i)
        h[i] ^= v[i] ^ v[i + 8];
}

std::vector<std::uint8_t> Blake2b(std::span<const std::uint8_t> message, std::size_t digestLength,
                                  std::span<const std::uint8_t> key, Blake2bCounter counter) {
    std::vector<std::uint8_t> data(key.begin(), key.end());
    if (!key.empty())
        data.resize(128);
    data.insert(data.end(), message.begin(), message.end());
    const std::size_t length = data.size();
    data.resize(std::max<std::size_t>((length + 127) / 128, 1) * 128);

    std::array<Word, 8> h = iv;
    h[0] ^= 0x01010000 ^ (key.size() << 8) ^ digestLength;
    for (std::size_t at = 0; at < data.size(); at += 128) {
        const bool last = at + 128 == data.size();
        counter.Add(last ? length - at : 128);
        Blake2bCompress(h, std::span<const std::uint8_t, 128>(data.data() + at, 128), counter, last);
    }

    std::vector<std::uint8_t> digest(digestLength);
    for (std::size_t i = 0; i < digestLength; ++i)
        digest[i] = static_cast<std::uint8_t>(h[i / 8] >> (8 * (i % 8)));
    return digest;
}

} // namespace reference
