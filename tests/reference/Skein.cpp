// SPDX-License-Identifier: MIT
#include "tests/reference/Skein.h"

#include <algorithm>
#include <bit>

namespace reference {
namespace {

using Word = std::uint64_t;
using Words = std::vector<Word>;
using Bytes = std::vector<std::uint8_t>;

// Skein 1.3, table 4: line d modulo 8, column j.
constexpr int rotations4[8][2] = {{14, 16}, {52, 57}, {23, 40}, {5, 37},
                                  {25, 33}, {46, 12}, {58, 22}, {32, 32}};
constexpr int rotations8[8][4] = {{46, 36, 19, 37}, {33, 27, 14, 42}, {17, 49, 36, 39}, {44, 9, 54, 56},
                                  {39, 30, 34, 24}, {13, 50, 10, 17}, {25, 29, 39, 43}, {8, 35, 56, 22}};
constexpr int rotations16[8][8] = {{24, 13, 8, 47, 8, 17, 22, 37},   {38, 19, 10, 55, 49, 18, 23, 52},
                                   {33, 4, 51, 13, 34, 41, 59, 17},  {5, 20, 48, 41, 47, 28, 16, 25},
                                   {41, 9, 37, 31, 12, 47, 44, 30},  {16, 34, 56, 51, 4, 53, 42, 41},
                                   {31, 44, 47, 46, 19, 42, 44, 25}, {9, 48, 35, 52, 23, 31, 37, 20}};

int Rotation(std::size_t words, std::size_t round, std::size_t pair) {
    const std::size_t d = round % 8;
    return words == 4 ? rotations4[d][pair] : words == 8 ? rotations8[d][pair] : rotations16[d][pair];
}

// Skein 1.3, table 3: word i of the result is word pi(i).
std::size_t Permuted(std::size_t words, std::size_t i) {
    static constexpr std::size_t four[] = {0, 3, 2, 1};
    static constexpr std::size_t eight[] = {2, 1, 4, 7, 6, 5, 0, 3};
    static constexpr std::size_t sixteen[] = {0, 9, 2, 13, 6, 11, 4, 15, 10, 7, 12, 3, 14, 5, 8, 1};
    return words == 4 ? four[i] : words == 8 ? eight[i] : sixteen[i];
}

// Subkey s, from the extended key and tweak.
Words Subkey(const Words& k, const Word (&t)[3], std::size_t s) {
    const std::size_t n = k.size() - 1;
    Words subkey(n);
    for (std::size_t i = 0; i < n; ++i)
        subkey[i] = k[(s + i) % (n + 1)];
    subkey[n - 3] += t[s % 3];
    subkey[n - 2] += t[(s + 1) % 3];
    subkey[n - 1] += s;
    return subkey;
}

void Add(Words& words, const Words& subkey) {
    for (std::size_t i = 0; i < words.size(); ++i)
        words[i] += subkey[i];
}

Words ToWords(const Bytes& bytes) {
    Words words(bytes.size() / 8);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        words[i / 8] |= Word{bytes[i]} << (8 * (i % 8));
    return words;
}

Bytes ToBytes(Word word) {
    Bytes bytes(8);
    for (std::size_t i = 0; i < 8; ++i)
        bytes[i] = static_cast<std::uint8_t>(word >> (8 * i));
    return bytes;
}

// UBI: chains the blocks of a message of one type.
Words Ubi(Words chain, std::span<const std::uint8_t> message, Word type, Word before = 0) {
    const std::size_t blockBytes = 8 * chain.size();
    const std::size_t blocks = std::max<std::size_t>((message.size() + blockBytes - 1) / blockBytes, 1);
    for (std::size_t block = 0; block < blocks; ++block) {
        const std::size_t from = block * blockBytes;
        const std::size_t to = std::min(from + blockBytes, message.size());
        Bytes padded(message.begin() + static_cast<std::ptrdiff_t>(from),
                     message.begin() + static_cast<std::ptrdiff_t>(to));
        padded.resize(blockBytes);
        const Word first = block == 0 ? 1 : 0;
        const Word last = block == blocks - 1 ? 1 : 0;
        const Words plain = ToWords(padded);
        const Words cipher = Threefish(chain, before + to, type << 56 | first << 62 | last << 63, plain);
        for (std::size_t i = 0; i < chain.size(); ++i)
            chain[i] = cipher[i] ^ plain[i];
    }
    return chain;
}

} // namespace

Words Threefish(const Words& key, Word tweak0, Word tweak1, const Words& plain) {
    const std::size_t n = key.size();
    Words k = key;
    k.push_back(0x1BD11BDAA9FC1A22);
    for (const Word word : key)
        k[n] ^= word;
    const Word t[3] = {tweak0, tweak1, tweak0 ^ tweak1};

    const std::size_t rounds = n == 16 ? 80 : 72;
    Words v = plain;
    for (std::size_t d = 0; d < rounds; ++d) {
        if (d % 4 == 0)
            Add(v, Subkey(k, t, d / 4));
        Words mixed(n);
        for (std::size_t j = 0; j < n / 2; ++j) {
            mixed[2 * j] = v[2 * j] + v[2 * j + 1];
            mixed[2 * j + 1] = std::rotl(v[2 * j + 1], Rotation(n, d, j)) ^ mixed[2 * j];
        }
        for (std::size_t i = 0; i < n; ++i)
            v[i] = mixed[Permuted(n, i)];
    }
    Add(v, Subkey(k, t, rounds / 4));
    return v;
}

Words SkeinInitialValue(std::size_t words, Word outputBits) {
    Bytes configuration = {'S', 'H', 'A', '3', 1, 0, 0, 0};
    const Bytes length = ToBytes(outputBits);
    configuration.insert(configuration.end(), length.begin(), length.end());
    configuration.resize(32);
    return Ubi(Words(words), configuration, 4);
}

Bytes Skein(std::span<const std::uint8_t> message, std::size_t stateBytes, std::size_t outputBytes,
            std::uint64_t before) {
    const Words chain = Ubi(SkeinInitialValue(stateBytes / 8, 8 * outputBytes), message, 48, before);
    Bytes output;
    for (Word counter = 0; output.size() < outputBytes; ++counter)
        for (const Word word : Ubi(chain, ToBytes(counter), 63)) {
            const Bytes bytes = ToBytes(word);
            output.insert(output.end(), bytes.begin(), bytes.end());
        }
    output.resize(outputBytes);
    return output;
}

} // namespace reference
