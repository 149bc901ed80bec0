// SPDX-License-Identifier: MIT
// Keccak-f[1600] of many messages side by side. Here a vector holds one word of the state of each message, and the words
// of a plane come from all planes of the round before, so each dies where it is used and 25 vectors are enough.
//
// Lanes_X86Avx2.h or Lanes_X86Avx512.h is included ahead of this.
#pragma once

#include "hash/kernels/Keccak.h"
#include "hash/kernels/Keccak_Constants.h"

#include <cstring>

namespace fyrn::kernels {
namespace {

// How far rho rotates the word at column x and row y, at x + 5 * y.
inline constexpr int rhoRotations[25] = {0,  1,  62, 28, 27, 36, 44, 6,  55, 20, 3,  10, 43,
                                         25, 39, 41, 45, 15, 21, 8,  18, 2,  61, 56, 14};

// What theta adds to each column.
struct Columns {
    Words64 change[5];
};

ISA_LANES ALWAYS_INLINE Words64 Parity(const Words64* a) {
    return Xor(Xor(a[0], a[5], a[10]), a[15], a[20]);
}

ISA_LANES ALWAYS_INLINE void Theta(Columns& c, const Words64 a[25]) {
    const Words64 p0 = Parity(a);
    const Words64 p2 = Parity(a + 2);
    c.change[1] = p0 ^ RotateLeft<1>(p2);
    const Words64 p4 = Parity(a + 4);
    c.change[3] = p2 ^ RotateLeft<1>(p4);
    const Words64 p1 = Parity(a + 1);
    c.change[0] = p4 ^ RotateLeft<1>(p1);
    const Words64 p3 = Parity(a + 3);
    c.change[2] = p1 ^ RotateLeft<1>(p3);
    c.change[4] = p3 ^ RotateLeft<1>(p0);
}

// The word that rho and pi bring to column x and row y, with theta's change of the column that it comes from.
template <int x, int y>
ISA_LANES ALWAYS_INLINE Words64 Moved(const Words64 a[25], const Columns& c) {
    constexpr int fromX = (x + 3 * y) % 5;
    constexpr int from = fromX + 5 * x;
    const Words64 changed = a[from] ^ c.change[fromX];
    if constexpr (rhoRotations[from] == 0)
        return changed;
    else
        return RotateLeft<rhoRotations[from]>(changed);
}

template <int y>
ISA_LANES ALWAYS_INLINE void PlanesFrom(Words64 e[25], const Words64 a[25], const Columns& c) {
    const Words64 b0 = Moved<0, y>(a, c);
    const Words64 b1 = Moved<1, y>(a, c);
    const Words64 b2 = Moved<2, y>(a, c);
    const Words64 b3 = Moved<3, y>(a, c);
    const Words64 b4 = Moved<4, y>(a, c);
    e[5 * y] = XorNotAnd(b0, b1, b2);
    e[5 * y + 1] = XorNotAnd(b1, b2, b3);
    e[5 * y + 2] = XorNotAnd(b2, b3, b4);
    e[5 * y + 3] = XorNotAnd(b3, b4, b0);
    e[5 * y + 4] = XorNotAnd(b4, b0, b1);
    if constexpr (y < 4)
        PlanesFrom<y + 1>(e, a, c);
}

// From the state a to the state e.
ISA_LANES ALWAYS_INLINE void Round(Words64 e[25], const Words64 a[25], std::uint64_t constant) {
    Columns c;
    Theta(c, a);
    PlanesFrom<0>(e, a, c);
    e[0] = e[0] ^ Broadcast(constant);
}

template <int i>
ISA_LANES ALWAYS_INLINE void Copy(Words64 to[25], const Words64 from[25]) {
    to[i] = from[i];
    if constexpr (i < 24)
        Copy<i + 1>(to, from);
}

ISA_LANES ALWAYS_INLINE void Permute(Words64 state[25]) {
    Words64 a[25];
    Words64 e[25];
    Copy<0>(a, state);
    for (int round = 0; round < 24; round += 2) {
        Round(e, a, keccakRoundConstants[round]);
        Round(a, e, keccakRoundConstants[round + 1]);
    }
    Copy<0>(state, a);
}

// One word of each message, where there are no sixteen bytes to take it from.
template <class T>
ISA_LANES ALWAYS_INLINE Words64 LoadOne(T* const messages[], std::size_t offset) {
    alignas(64) std::uint64_t words[Words64::lanes];
    for (std::size_t lane = 0; lane < Words64::lanes; ++lane)
        std::memcpy(words + lane, reinterpret_cast<const std::uint8_t*>(messages[lane]) + offset,
                    sizeof *words);
    Words64 all;
    std::memcpy(&all, words, sizeof all);
    return all;
}

// Adds the words of a block to the first ones of the state. An odd last word is taken with the one before it.
ISA_LANES ALWAYS_INLINE void Absorb(Words64 state[25], const std::uint8_t* const blocks[], std::size_t offset,
                                    std::size_t words) {
    Words64 low;
    Words64 high;
    for (std::size_t i = 0; i + 1 < words; i += 2) {
        LoadTwo(blocks, offset + 8 * i, low, high);
        state[i] = state[i] ^ low;
        state[i + 1] = state[i + 1] ^ high;
    }
    if (words == 1) {
        state[0] = state[0] ^ LoadOne(blocks, offset);
    } else if (words % 2 != 0) {
        LoadTwo(blocks, offset + 8 * (words - 2), low, high);
        state[words - 1] = state[words - 1] ^ high;
    }
}

// Absorbs blocks as KeccakLanes does, of Words64::lanes messages.
ISA_LANES ALWAYS_INLINE void AbsorbBlocks(std::uint64_t* const states[], const std::uint8_t* const blocks[],
                                          std::size_t words, std::size_t count) {
    Words64 state[25];
    Words64 unused;
    LoadTwo(states, 8 * 23, unused, state[24]);
    for (std::size_t i = 0; i < 24; i += 2)
        LoadTwo(states, 8 * i, state[i], state[i + 1]);
    for (std::size_t offset = 0; count != 0; --count, offset += 8 * words) {
        Absorb(state, blocks, offset, words);
        Permute(state);
    }
    StoreTwo(states, 8 * 23, state[23], state[24]);
    for (std::size_t i = 0; i < 24; i += 2)
        StoreTwo(states, 8 * i, state[i], state[i + 1]);
}

} // namespace
} // namespace fyrn::kernels
