// SPDX-License-Identifier: MIT
// What the kernels of Skein-1024 in vectors of four words share: four pairs of words are mixed side by side, and
// hardly a word is ever moved.
//
// Call the words at even places e0 to e7 and those at odd places o0 to o7. Instead of permuting the words after
// every round, look at which e meets which o in it: the meetings repeat after four rounds, and with the four
// registers
//     ec = e0 e3 e1 e2    ed = e4 e5 e6 e7    oa = o0 o3 o1 o2    ob = o4 o5 o6 o7
// round 0 mixes ec with oa and ed with ob, round 1 ed with oa and ec with ob, as they are; for round 2 the
// words of ec and ed change places within each half, for round 3 the halves do, and turning both around after
// it leads back to the start. Each o is rotated by what its pair's place asks for, so the counts are vectors.
//
// The subkey of s is, with indices modulo 17, V(s) for ec, V(s + 1) for oa, W(s) for ed and W(s + 1) for ob:
//     V(j) = k[j] k[j + 6] k[j + 2] k[j + 4]    W(j) = k[j + 8] k[j + 10] k[j + 12] k[j + 14]
// Both are loads from the key words stored in steps of two, which run through all 17; and V(0), V(1), W(0) and
// W(1) are the chaining value in the order of the state, in which it stays from block to block.
//
// A kernel defines ISA_SKEIN1024, the instructions that it is compiled for, before it includes this. It brings Mix, a
// type for the key of a block, and for that Expand, V and W.
#pragma once

#include "hash/kernels/Isa.h"
#include "hash/kernels/Skein.h"
#include "hash/kernels/SkeinThreefish.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

using threefish::Word;

struct State {
    __m256i ec, ed, oa, ob;
};

// Rotations of a round modulo 8 for the lanes of oa and ob: to the left, and the rest to 64 to the right.
struct alignas(32) Rotations {
    Word leftA[4], rightA[4], leftB[4], rightB[4];
};

struct RotationTable {
    Rotations rounds[8];
};

// Follows each odd word through the permutations to the pair that it belongs to in every round.
constexpr RotationTable DeriveRotations() {
    using P = threefish::Parameters<16>;
    constexpr int lanesA[4] = {0, 3, 1, 2};
    RotationTable table{};
    std::size_t pairOf[8] = {0, 1, 2, 3, 4, 5, 6, 7};
    for (std::size_t round = 0; round < 8; ++round) {
        Rotations& r = table.rounds[round];
        for (std::size_t lane = 0; lane < 4; ++lane) {
            r.leftA[lane] = static_cast<Word>(P::rotations[round][pairOf[lanesA[lane]]]);
            r.leftB[lane] = static_cast<Word>(P::rotations[round][pairOf[4 + lane]]);
            r.rightA[lane] = 64 - r.leftA[lane];
            r.rightB[lane] = 64 - r.leftB[lane];
        }
        for (std::size_t& pair : pairOf) {
            std::size_t next = 0;
            while (P::permutation[2 * next + 1] != 2 * pair + 1)
                ++next;
            pair = next;
        }
    }
    return table;
}

inline constexpr RotationTable rotations = DeriveRotations();

ISA_SKEIN1024 ALWAYS_INLINE __m256i Load(const void* words) {
    return _mm256_loadu_si256(static_cast<const __m256i*>(words));
}

ISA_SKEIN1024 ALWAYS_INLINE void Store(void* words, __m256i value) {
    _mm256_storeu_si256(static_cast<__m256i*>(words), value);
}

// Sixteen words from memory in the order of the state.
ISA_SKEIN1024 ALWAYS_INLINE State LoadState(const void* memory) {
    const auto* const words = static_cast<const __m256i*>(memory);
    const __m256i w0 = Load(words);
    const __m256i w4 = Load(words + 1);
    const __m256i w8 = Load(words + 2);
    const __m256i w12 = Load(words + 3);
    return {_mm256_permute4x64_epi64(_mm256_unpacklo_epi64(w0, w4), 0x6c),
            _mm256_permute4x64_epi64(_mm256_unpacklo_epi64(w8, w12), 0xd8),
            _mm256_permute4x64_epi64(_mm256_unpackhi_epi64(w0, w4), 0x6c),
            _mm256_permute4x64_epi64(_mm256_unpackhi_epi64(w8, w12), 0xd8)};
}

ISA_SKEIN1024 ALWAYS_INLINE void StoreState(Word* words, const State& state) {
    const __m256i ec = _mm256_permute4x64_epi64(state.ec, 0x6c);
    const __m256i ed = _mm256_permute4x64_epi64(state.ed, 0xd8);
    const __m256i oa = _mm256_permute4x64_epi64(state.oa, 0x6c);
    const __m256i ob = _mm256_permute4x64_epi64(state.ob, 0xd8);
    Store(words, _mm256_unpacklo_epi64(ec, oa));
    Store(words + 4, _mm256_unpackhi_epi64(ec, oa));
    Store(words + 8, _mm256_unpacklo_epi64(ed, ob));
    Store(words + 12, _mm256_unpackhi_epi64(ed, ob));
}

ISA_SKEIN1024 ALWAYS_INLINE State Xor(const State& x, const State& y) {
    return {_mm256_xor_si256(x.ec, y.ec), _mm256_xor_si256(x.ed, y.ed), _mm256_xor_si256(x.oa, y.oa),
            _mm256_xor_si256(x.ob, y.ob)};
}

// Where key word j stands among the key words k0 k2 ... k16 k1 k3 ... k15 k0 k2 k4 k6.
constexpr int Place(int j) {
    const int index = j % 17;
    return index % 2 == 0 ? index / 2 : 9 + index / 2;
}

// What the tweak adds to ed and ob.
struct TweakVectors {
    __m256i forEd[3];
    __m256i forOb[3];
};

ISA_SKEIN1024 ALWAYS_INLINE TweakVectors ExpandTweak(const Word tweak[2]) {
    const Word words[3] = {tweak[0], tweak[1], tweak[0] ^ tweak[1]};
    TweakVectors vectors;
    for (int i = 0; i < 3; ++i) {
        vectors.forEd[i] = _mm256_set_epi64x(static_cast<long long>(words[(i + 1) % 3]), 0, 0, 0);
        vectors.forOb[i] = _mm256_set_epi64x(0, static_cast<long long>(words[i]), 0, 0);
    }
    return vectors;
}

// V(j) and W(j) come from the key as a kernel keeps it.
template <int s, class Key>
ISA_SKEIN1024 ALWAYS_INLINE void AddSubkey(State& x, const Key& key, const TweakVectors& tweak) {
    const __m256i forEd = _mm256_add_epi64(W<s>(key), tweak.forEd[s % 3]);
    const __m256i number = _mm256_add_epi64(tweak.forOb[s % 3], _mm256_set_epi64x(s, 0, 0, 0));
    x.ec = _mm256_add_epi64(x.ec, V<s>(key));
    x.oa = _mm256_add_epi64(x.oa, V<s + 1>(key));
    x.ed = _mm256_add_epi64(x.ed, forEd);
    x.ob = _mm256_add_epi64(x.ob, _mm256_add_epi64(W<s + 1>(key), number));
}

// Mixes four pairs, whose odd words are rotated to the left, or the rest to the right.
ISA_SKEIN1024 void Mix(__m256i& even, __m256i& odd, const Word left[4], const Word right[4]);

template <int round>
ISA_SKEIN1024 ALWAYS_INLINE void Round(State& x) {
    constexpr const Rotations& r = rotations.rounds[round % 8];
    if constexpr (round % 2 == 0) {
        Mix(x.ec, x.oa, r.leftA, r.rightA);
        Mix(x.ed, x.ob, r.leftB, r.rightB);
    } else {
        Mix(x.ed, x.oa, r.leftA, r.rightA);
        Mix(x.ec, x.ob, r.leftB, r.rightB);
    }
}

// Four rounds with the subkey ahead of them, and all that follow.
template <int s, class Key>
ISA_SKEIN1024 ALWAYS_INLINE void RoundsFrom(State& x, const Key& key, const TweakVectors& tweak) {
    AddSubkey<s>(x, key, tweak);
    if constexpr (s < 20) {
        Round<4 * s>(x);
        Round<4 * s + 1>(x);
        x.ec = _mm256_shuffle_epi32(x.ec, 0x4e);
        x.ed = _mm256_shuffle_epi32(x.ed, 0x4e);
        Round<4 * s + 2>(x);
        x.ec = _mm256_permute4x64_epi64(x.ec, 0x4e);
        x.ed = _mm256_permute4x64_epi64(x.ed, 0x4e);
        Round<4 * s + 3>(x);
        x.ec = _mm256_permute4x64_epi64(x.ec, 0x1b);
        x.ed = _mm256_permute4x64_epi64(x.ed, 0x1b);
        RoundsFrom<s + 1>(x, key, tweak);
    }
}

// Absorbs blocks as SkeinBlocks does. The key of a block, the chaining value, is expanded by Expand.
template <class Key>
ISA_SKEIN1024 ALWAYS_INLINE void AbsorbBlocks(Word* words, Word tweak[2], const std::uint8_t* blocks,
                                              std::size_t count, Word added) {
    State chain = LoadState(words);
    for (; count != 0; --count, blocks += 128) {
        tweak[0] += added;
        Key key;
        Expand(key, chain);
        const TweakVectors tweakVectors = ExpandTweak(tweak);
        const State plain = LoadState(blocks);
        State x = plain;
        RoundsFrom<0>(x, key, tweakVectors);
        chain = Xor(x, plain);
        tweak[1] &= ~skein_tweak::first;
    }
    StoreState(words, chain);
}

} // namespace
} // namespace fyrn::kernels
