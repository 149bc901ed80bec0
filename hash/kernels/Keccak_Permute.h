// SPDX-License-Identifier: MIT
// Keccak-f[1600] in plain C++, inlined into the kernels that are compiled for one instruction set or another: 25 local
// lanes, one plane of the result after the other, and two rounds per turn of the loop, from the lanes a.. to the lanes
// e.. and back, so that no lane is ever moved.
#pragma once

#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Isa.h"
#include "hash/kernels/Keccak_Constants.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// A lane of the round's input with theta's change of its column, rotated, on its way to the lane it becomes.
#define KECCAK_LANE(lane, in, change, rotation) lane = std::rotl(in ^ change, rotation);

// A lane of the result, from the lane at its place and the two beside it in its plane.
#define KECCAK_CHI(out, lane, next, afterNext) out = lane ^ (~next & afterNext);

// One round, plane after plane, the lanes of two planes in turn in f and g. The order, in which the lanes of one plane
// are loaded while those before them are stored, is the fastest of some four hundred on a Zen 4 core.
#define KECCAK_ROUND(in, out, constant)                                                                      \
    p0 = in##10 ^ in##20 ^ in##00 ^ in##40 ^ in##30;                                                         \
    p1 = in##11 ^ in##21 ^ in##01 ^ in##41 ^ in##31;                                                         \
    p2 = in##12 ^ in##22 ^ in##02 ^ in##42 ^ in##32;                                                         \
    p3 = in##13 ^ in##23 ^ in##03 ^ in##43 ^ in##33;                                                         \
    p4 = in##14 ^ in##24 ^ in##04 ^ in##44 ^ in##34;                                                         \
    d3 = p2 ^ std::rotl(p4, 1);                                                                              \
    d4 = p3 ^ std::rotl(p0, 1);                                                                              \
    d2 = p1 ^ std::rotl(p3, 1);                                                                              \
    d1 = p0 ^ std::rotl(p2, 1);                                                                              \
    d0 = p4 ^ std::rotl(p1, 1);                                                                              \
    KECCAK_LANE(f0, in##02, d2, 62)                                                                          \
    KECCAK_LANE(f1, in##13, d3, 55)                                                                          \
    KECCAK_LANE(f2, in##24, d4, 39)                                                                          \
    KECCAK_LANE(f3, in##30, d0, 41)                                                                          \
    KECCAK_LANE(f4, in##41, d1, 2)                                                                           \
    KECCAK_CHI(out##40, f0, f1, f2)                                                                          \
    KECCAK_CHI(out##41, f1, f2, f3)                                                                          \
    KECCAK_CHI(out##42, f2, f3, f4)                                                                          \
    KECCAK_CHI(out##43, f3, f4, f0)                                                                          \
    KECCAK_CHI(out##44, f4, f0, f1)                                                                          \
    KECCAK_LANE(g0, in##01, d1, 1)                                                                           \
    KECCAK_LANE(g1, in##12, d2, 6)                                                                           \
    KECCAK_LANE(g2, in##23, d3, 25)                                                                          \
    KECCAK_LANE(g3, in##34, d4, 8)                                                                           \
    KECCAK_LANE(g4, in##40, d0, 18)                                                                          \
    KECCAK_CHI(out##20, g0, g1, g2)                                                                          \
    KECCAK_CHI(out##21, g1, g2, g3)                                                                          \
    KECCAK_CHI(out##22, g2, g3, g4)                                                                          \
    KECCAK_LANE(f2, in##20, d0, 3)                                                                           \
    KECCAK_LANE(f3, in##31, d1, 45)                                                                          \
    KECCAK_LANE(f4, in##42, d2, 61)                                                                          \
    KECCAK_CHI(out##23, g3, g4, g0)                                                                          \
    KECCAK_CHI(out##24, g4, g0, g1)                                                                          \
    KECCAK_LANE(f0, in##03, d3, 28)                                                                          \
    KECCAK_LANE(f1, in##14, d4, 20)                                                                          \
    KECCAK_CHI(out##10, f0, f1, f2)                                                                          \
    KECCAK_CHI(out##11, f1, f2, f3)                                                                          \
    KECCAK_LANE(g4, in##44, d4, 14)                                                                          \
    KECCAK_CHI(out##12, f2, f3, f4)                                                                          \
    KECCAK_LANE(g2, in##22, d2, 43)                                                                          \
    KECCAK_LANE(g3, in##33, d3, 21)                                                                          \
    KECCAK_LANE(g1, in##11, d1, 44)                                                                          \
    KECCAK_CHI(out##13, f3, f4, f0)                                                                          \
    KECCAK_LANE(g0, in##00, d0, 0)                                                                           \
    KECCAK_CHI(out##14, f4, f0, f1)                                                                          \
    KECCAK_CHI(out##02, g2, g3, g4)                                                                          \
    KECCAK_CHI(out##00, g0, g1, g2) out##00 ^= constant;                                                     \
    KECCAK_CHI(out##03, g3, g4, g0)                                                                          \
    KECCAK_CHI(out##01, g1, g2, g3)                                                                          \
    KECCAK_CHI(out##04, g4, g0, g1)                                                                          \
    KECCAK_LANE(f2, in##21, d1, 10)                                                                          \
    KECCAK_LANE(f3, in##32, d2, 15)                                                                          \
    KECCAK_LANE(f0, in##04, d4, 27)                                                                          \
    KECCAK_LANE(f4, in##43, d3, 56)                                                                          \
    KECCAK_LANE(f1, in##10, d0, 36)                                                                          \
    KECCAK_CHI(out##32, f2, f3, f4)                                                                          \
    KECCAK_CHI(out##33, f3, f4, f0)                                                                          \
    KECCAK_CHI(out##30, f0, f1, f2)                                                                          \
    KECCAK_CHI(out##31, f1, f2, f3)                                                                          \
    KECCAK_CHI(out##34, f4, f0, f1)

ALWAYS_INLINE void KeccakPermute(std::uint64_t state[25]) {
    using Lane = std::uint64_t;
    Lane a00 = state[0], a01 = state[1], a02 = state[2], a03 = state[3], a04 = state[4];
    Lane a10 = state[5], a11 = state[6], a12 = state[7], a13 = state[8], a14 = state[9];
    Lane a20 = state[10], a21 = state[11], a22 = state[12], a23 = state[13], a24 = state[14];
    Lane a30 = state[15], a31 = state[16], a32 = state[17], a33 = state[18], a34 = state[19];
    Lane a40 = state[20], a41 = state[21], a42 = state[22], a43 = state[23], a44 = state[24];
    Lane e00, e01, e02, e03, e04, e10, e11, e12, e13, e14, e20, e21, e22, e23, e24;
    Lane e30, e31, e32, e33, e34, e40, e41, e42, e43, e44;
    Lane p0, p1, p2, p3, p4, d0, d1, d2, d3, d4, f0, f1, f2, f3, f4, g0, g1, g2, g3, g4;
    for (int round = 0; round < 24; round += 2) {
        KECCAK_ROUND(a, e, keccakRoundConstants[round])
        KECCAK_ROUND(e, a, keccakRoundConstants[round + 1])
    }
    state[0] = a00, state[1] = a01, state[2] = a02, state[3] = a03, state[4] = a04;
    state[5] = a10, state[6] = a11, state[7] = a12, state[8] = a13, state[9] = a14;
    state[10] = a20, state[11] = a21, state[12] = a22, state[13] = a23, state[14] = a24;
    state[15] = a30, state[16] = a31, state[17] = a32, state[18] = a33, state[19] = a34;
    state[20] = a40, state[21] = a41, state[22] = a42, state[23] = a43, state[24] = a44;
}

ALWAYS_INLINE void KeccakAbsorb(std::uint64_t state[25], const std::uint8_t* block, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; ++i)
        state[i] ^= LoadLittle<std::uint64_t>(block + 8 * i);
    KeccakPermute(state);
}

#undef KECCAK_ROUND
#undef KECCAK_CHI
#undef KECCAK_LANE

} // namespace fyrn::kernels
