// SPDX-License-Identifier: MIT
// Skein of many messages side by side. The words are never moved: where the permutation would have
// brought them is known before the program runs, and after four rounds they are back.
//
// Lanes_X86Avx2.h or Lanes_X86Avx512.h is included ahead of this.
#pragma once

#include "hash/kernels/Skein.h"
#include "hash/kernels/SkeinThreefish.h"

namespace fyrn::kernels {
namespace {

// Where the word is that `round` permutations bring to place i.
template <std::size_t words>
constexpr std::size_t PlaceOf(std::size_t round, std::size_t i) {
    for (; round % 4 != 0; --round)
        i = threefish::Parameters<words>::permutation[i];
    return i;
}

// The key with its parity word, and the tweak with the sum of its words.
template <std::size_t words>
struct LaneSchedule {
    Words64 key[words + 1];
    Words64 tweak[3];
};

// Adds the words of subkey s from word i on.
template <std::size_t s, std::size_t i = 0, std::size_t words>
ISA_LANES ALWAYS_INLINE void AddSubkey(Words64 (&x)[words], const LaneSchedule<words>& schedule) {
    Words64 sum = schedule.key[(s + i) % (words + 1)];
    if constexpr (i == words - 1)
        sum = sum + std::uint64_t{s};
    else if constexpr (i == words - 2)
        sum = sum + schedule.tweak[(s + 1) % 3];
    else if constexpr (i == words - 3)
        sum = sum + schedule.tweak[s % 3];
    x[i] = x[i] + sum;
    if constexpr (i < words - 1)
        AddSubkey<s, i + 1>(x, schedule);
}

// The mixings of a round from pair j on.
template <std::size_t round, std::size_t j = 0, std::size_t words>
ISA_LANES ALWAYS_INLINE void Round(Words64 (&x)[words]) {
    constexpr std::size_t even = PlaceOf<words>(round, 2 * j);
    constexpr std::size_t odd = PlaceOf<words>(round, 2 * j + 1);
    x[even] = x[even] + x[odd];
    x[odd] = RotateLeft<threefish::Parameters<words>::rotations[round % 8][j]>(x[odd]) ^ x[even];
    if constexpr (j < words / 2 - 1)
        Round<round, j + 1>(x);
}

// Encrypts the words x in place, from subkey s on.
template <std::size_t s = 0, std::size_t words>
ISA_LANES ALWAYS_INLINE void Encrypt(Words64 (&x)[words], const LaneSchedule<words>& schedule) {
    AddSubkey<s>(x, schedule);
    if constexpr (s < threefish::Parameters<words>::rounds / 4) {
        Round<4 * s>(x);
        Round<4 * s + 1>(x);
        Round<4 * s + 2>(x);
        Round<4 * s + 3>(x);
        Encrypt<s + 1>(x, schedule);
    }
}

template <std::size_t words, std::size_t i = 0, class T>
ISA_LANES ALWAYS_INLINE void LoadAll(T* const messages[], std::size_t offset, Words64* x) {
    LoadTwo(messages, offset + 8 * i, x[i], x[i + 1]);
    if constexpr (i + 2 < words)
        LoadAll<words, i + 2>(messages, offset, x);
}

template <std::size_t words, std::size_t i = 0>
ISA_LANES ALWAYS_INLINE void StoreAll(std::uint64_t* const states[], const Words64* x) {
    StoreTwo(states, 8 * i, x[i], x[i + 1]);
    if constexpr (i + 2 < words)
        StoreAll<words, i + 2>(states, x);
}

// Result and block together are the next key.
template <std::size_t words, std::size_t i = 0>
ISA_LANES ALWAYS_INLINE void NextKey(LaneSchedule<words>& schedule, const Words64 (&x)[words],
                                     const Words64 (&block)[words]) {
    schedule.key[i] = x[i] ^ block[i];
    if constexpr (i < words - 1)
        NextKey<words, i + 1>(schedule, x, block);
}

template <std::size_t words, std::size_t i = 0>
ISA_LANES ALWAYS_INLINE Words64 Parity(const LaneSchedule<words>& schedule) {
    if constexpr (i == words)
        return Broadcast(threefish::keyParity);
    else
        return schedule.key[i] ^ Parity<words, i + 1>(schedule);
}

template <std::size_t words, std::size_t i = 0>
ISA_LANES ALWAYS_INLINE void Copy(Words64 (&to)[words], const Words64 (&from)[words]) {
    to[i] = from[i];
    if constexpr (i < words - 1)
        Copy<words, i + 1>(to, from);
}

// Compresses blocks as SkeinLanes does, of Words64::lanes messages.
template <std::size_t words>
ISA_LANES ALWAYS_INLINE void CompressBlocks(std::uint64_t* const chains[], std::uint64_t* const tweaks[],
                                            const std::uint8_t* const blocks[], std::size_t count,
                                            std::uint64_t added) {
    LaneSchedule<words> schedule;
    LoadAll<words>(chains, 0, schedule.key);
    LoadTwo(tweaks, 0, schedule.tweak[0], schedule.tweak[1]);
    for (std::size_t offset = 0; offset != 8 * words * count; offset += 8 * words) {
        schedule.key[words] = Parity(schedule);
        schedule.tweak[0] = schedule.tweak[0] + added;
        schedule.tweak[2] = schedule.tweak[0] ^ schedule.tweak[1];
        Words64 block[words];
        Words64 x[words];
        if constexpr (words == 8)
            LoadLine(blocks, offset, block);
        else
            LoadAll<words>(blocks, offset, block);
        Copy(x, block);
        Encrypt(x, schedule);
        NextKey(schedule, x, block);
        schedule.tweak[1] = schedule.tweak[1] & Broadcast(~skein_tweak::first);
    }
    StoreAll<words>(chains, schedule.key);
    StoreTwo(tweaks, 0, schedule.tweak[0], schedule.tweak[1]);
}

} // namespace
} // namespace fyrn::kernels
