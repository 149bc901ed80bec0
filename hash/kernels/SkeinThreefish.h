// SPDX-License-Identifier: MIT
// Threefish (Skein 1.3) for 4, 8 and 16 words, unrolled by templates: every index into the words, the key and
// the rotations is a constant, so that the compiler keeps the words in registers. Also runs at compile time.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace fyrn::kernels::threefish {

using Word = std::uint64_t;

inline constexpr Word keyParity = 0x1bd11bdaa9fc1a22;

// Rotations by round modulo 8 and pair of words; the place that each word comes from after every round.
template <std::size_t words>
struct Parameters;

template <>
struct Parameters<4> {
    static constexpr std::size_t rounds = 72;
    static constexpr int rotations[8][2] = {{14, 16}, {52, 57}, {23, 40}, {5, 37},
                                            {25, 33}, {46, 12}, {58, 22}, {32, 32}};
    static constexpr std::size_t permutation[4] = {0, 3, 2, 1};
};

template <>
struct Parameters<8> {
    static constexpr std::size_t rounds = 72;
    static constexpr int rotations[8][4] = {{46, 36, 19, 37}, {33, 27, 14, 42}, {17, 49, 36, 39},
                                            {44, 9, 54, 56},  {39, 30, 34, 24}, {13, 50, 10, 17},
                                            {25, 29, 39, 43}, {8, 35, 56, 22}};
    static constexpr std::size_t permutation[8] = {2, 1, 4, 7, 6, 5, 0, 3};
};

template <>
struct Parameters<16> {
    static constexpr std::size_t rounds = 80;
    static constexpr int rotations[8][8] = {
        {24, 13, 8, 47, 8, 17, 22, 37},   {38, 19, 10, 55, 49, 18, 23, 52}, {33, 4, 51, 13, 34, 41, 59, 17},
        {5, 20, 48, 41, 47, 28, 16, 25},  {41, 9, 37, 31, 12, 47, 44, 30},  {16, 34, 56, 51, 4, 53, 42, 41},
        {31, 44, 47, 46, 19, 42, 44, 25}, {9, 48, 35, 52, 23, 31, 37, 20}};
    static constexpr std::size_t permutation[16] = {0, 9, 2, 13, 6, 11, 4, 15, 10, 7, 12, 3, 14, 5, 8, 1};
};

// The key with its parity word, and the tweak with the sum of its words.
template <std::size_t words>
struct Schedule {
    Word key[words + 1];
    Word tweak[3];
};

template <std::size_t words>
[[gnu::always_inline]] constexpr Schedule<words> Expand(const Word* key, const Word* tweak) {
    Schedule<words> schedule{};
    schedule.key[words] = keyParity;
    [&]<std::size_t... i>(std::index_sequence<i...>) __attribute__((always_inline)) {
        ((schedule.key[words] ^= schedule.key[i] = key[i]), ...);
    }
    (std::make_index_sequence<words>());
    schedule.tweak[0] = tweak[0];
    schedule.tweak[1] = tweak[1];
    schedule.tweak[2] = tweak[0] ^ tweak[1];
    return schedule;
}

// Word i of subkey s.
template <std::size_t words, std::size_t s, std::size_t i>
[[gnu::always_inline]] constexpr Word Subkey(const Schedule<words>& schedule) {
    const Word key = schedule.key[(s + i) % (words + 1)];
    if constexpr (i == words - 1)
        return key + s;
    else if constexpr (i == words - 2)
        return key + schedule.tweak[(s + 1) % 3];
    else if constexpr (i == words - 3)
        return key + schedule.tweak[s % 3];
    else
        return key;
}

template <std::size_t s, std::size_t words>
[[gnu::always_inline]] constexpr void AddSubkey(Word (&x)[words], const Schedule<words>& schedule) {
    [&]<std::size_t... i>(std::index_sequence<i...>) __attribute__((always_inline)) {
        ((x[i] += Subkey<words, s, i>(schedule)), ...);
    }
    (std::make_index_sequence<words>());
}

[[gnu::always_inline]] constexpr void Mix(Word& even, Word& odd, int rotation) {
    even += odd;
    odd = std::rotl(odd, rotation) ^ even;
}

template <std::size_t round, std::size_t words>
[[gnu::always_inline]] constexpr void Round(Word (&x)[words]) {
    using P = Parameters<words>;
    [&]<std::size_t... j>(std::index_sequence<j...>) __attribute__((always_inline)) {
        (Mix(x[2 * j], x[2 * j + 1], P::rotations[round % 8][j]), ...);
    }
    (std::make_index_sequence<words / 2>());
    [&]<std::size_t... i>(std::index_sequence<i...>) __attribute__((always_inline)) {
        const Word mixed[words] = {x[i]...};
        ((x[i] = mixed[P::permutation[i]]), ...);
    }
    (std::make_index_sequence<words>());
}

// Encrypts the words x in place.
template <std::size_t words>
[[gnu::always_inline]] constexpr void Encrypt(Word (&x)[words], const Schedule<words>& schedule) {
    constexpr std::size_t injections = Parameters<words>::rounds / 4;
    [&]<std::size_t... s>(std::index_sequence<s...>) __attribute__((always_inline)) {
        ((AddSubkey<s>(x, schedule), Round<4 * s>(x), Round<4 * s + 1>(x), Round<4 * s + 2>(x),
          Round<4 * s + 3>(x)),
         ...);
    }
    (std::make_index_sequence<injections>());
    AddSubkey<injections>(x, schedule);
}

} // namespace fyrn::kernels::threefish
