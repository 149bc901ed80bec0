// SPDX-License-Identifier: MIT
// Keccak-f[1600] in plain C++, inlined into the kernels that are compiled for one instruction set or another: 25 local
// lanes, one plane of the result after the other, and two rounds per turn of the loop, from the lanes a.. to the lanes
// e.. and back, so that no lane is ever moved.
#pragma once

#include "crypto/kernels/ByteOrder.h"
#include "crypto/kernels/Isa.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace kernels {

inline constexpr std::uint64_t keccakRoundConstants[24] = {
    0x0000000000000001, 0x0000000000008082, 0x800000000000808a, 0x8000000080008000, 0x000000000000808b,
    0x0000000080000001, 0x8000000080008081, 0x8000000000008009, 0x000000000000008a, 0x0000000000000088,
    0x0000000080008009, 0x000000008000000a, 0x000000008000808b, 0x800000000000008b, 0x8000000000008089,
    0x8000000000008003, 0x8000000000008002, 0x8000000000000080, 0x000000000000800a, 0x800000008000000a,
    0x8000000080008081, 0x8000000000008080, 0x0000000080000001, 0x8000000080008008,
};

// Plane y of the result. Its lane x comes from row x, column c<x> = x + 3y of the round's input, with theta's
// change of that column, rotated by r<x>. The parities of the result's columns are gathered on the way.
#define KECCAK_PLANE(in, out, y, c0, c1, c2, c3, c4, r0, r1, r2, r3, r4)                                     \
    b0 = std::rotl(in##0##c0 ^ d##c0, r0);                                                                   \
    b1 = std::rotl(in##1##c1 ^ d##c1, r1);                                                                   \
    b2 = std::rotl(in##2##c2 ^ d##c2, r2);                                                                   \
    b3 = std::rotl(in##3##c3 ^ d##c3, r3);                                                                   \
    b4 = std::rotl(in##4##c4 ^ d##c4, r4);                                                                   \
    out##y##0 = b0 ^ (~b1 & b2);                                                                             \
    out##y##1 = b1 ^ (~b2 & b3);                                                                             \
    out##y##2 = b2 ^ (~b3 & b4);                                                                             \
    out##y##3 = b3 ^ (~b4 & b0);                                                                             \
    out##y##4 = b4 ^ (~b0 & b1);

#define KECCAK_ROUND(in, out, constant)                                                                      \
    p0 = in##00 ^ in##10 ^ in##20 ^ in##30 ^ in##40;                                                         \
    p1 = in##01 ^ in##11 ^ in##21 ^ in##31 ^ in##41;                                                         \
    p2 = in##02 ^ in##12 ^ in##22 ^ in##32 ^ in##42;                                                         \
    p3 = in##03 ^ in##13 ^ in##23 ^ in##33 ^ in##43;                                                         \
    p4 = in##04 ^ in##14 ^ in##24 ^ in##34 ^ in##44;                                                         \
    d0 = p4 ^ std::rotl(p1, 1);                                                                              \
    d1 = p0 ^ std::rotl(p2, 1);                                                                              \
    d2 = p1 ^ std::rotl(p3, 1);                                                                              \
    d3 = p2 ^ std::rotl(p4, 1);                                                                              \
    d4 = p3 ^ std::rotl(p0, 1);                                                                              \
    KECCAK_PLANE(in, out, 0, 0, 1, 2, 3, 4, 0, 44, 43, 21, 14)                                               \
    out##00 ^= constant;                                                                                     \
    KECCAK_PLANE(in, out, 1, 3, 4, 0, 1, 2, 28, 20, 3, 45, 61)                                               \
    KECCAK_PLANE(in, out, 2, 1, 2, 3, 4, 0, 1, 6, 25, 8, 18)                                                 \
    KECCAK_PLANE(in, out, 3, 4, 0, 1, 2, 3, 27, 36, 10, 15, 56)                                              \
    KECCAK_PLANE(in, out, 4, 2, 3, 4, 0, 1, 62, 55, 39, 41, 2)

ALWAYS_INLINE void KeccakPermute(std::uint64_t state[25]) {
    using Lane = std::uint64_t;
    Lane a00 = state[0], a01 = state[1], a02 = state[2], a03 = state[3], a04 = state[4];
    Lane a10 = state[5], a11 = state[6], a12 = state[7], a13 = state[8], a14 = state[9];
    Lane a20 = state[10], a21 = state[11], a22 = state[12], a23 = state[13], a24 = state[14];
    Lane a30 = state[15], a31 = state[16], a32 = state[17], a33 = state[18], a34 = state[19];
    Lane a40 = state[20], a41 = state[21], a42 = state[22], a43 = state[23], a44 = state[24];
    Lane e00, e01, e02, e03, e04, e10, e11, e12, e13, e14, e20, e21, e22, e23, e24;
    Lane e30, e31, e32, e33, e34, e40, e41, e42, e43, e44;
    Lane p0, p1, p2, p3, p4, d0, d1, d2, d3, d4, b0, b1, b2, b3, b4;
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
#undef KECCAK_PLANE

} // namespace kernels
