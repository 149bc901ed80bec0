// SPDX-License-Identifier: MIT
// Keccak-f[1600] with AVX-512: five vectors of five lanes each, whose words are never put back into their
// places.
//
// Lane t of vector r holds the word at (x, y) = o_r + t v, modulo 5. At the start o_r = (0, r) and v = (1,
// 0): a vector is a plane. Pi moves the word at (x, y) to (y, 2x + 3y), which is linear, so no word has to
// move: o_r and v take the names of their new places. After 24 rounds every word is where it began.
//
// Words move only to meet for theta and chi, and every such move turns the five lanes of a vector round:
// - When each lane holds words of one column over all vectors, theta's parities are a sum of vectors, and
//   meet the columns beside by two turns. Otherwise four vectors are turned for the parity, and its sums
//   turned back for them. Once in six rounds v has x = 0, and a vector's column is the sum of its own
//   lanes.
// - For chi, an even round turns four vectors so that each lane holds words of one row; its neighbours are
//   then in the same lane of other vectors. An odd round turns the neighbours, ten turns in all, and leaves
//   the vectors as they are, which gives the next round one column in each lane.
// Rho is one rotation by counts from memory. Which lane holds which word is known before the program runs,
// so script/keccak-rounds carries o_r and v through the rounds and writes them down:
// Keccak_X86Avx512Rounds.h.
#pragma once

#include "hash/kernels/Isa.h"

#include <immintrin.h>

#include <cstdint>

namespace fyrn::kernels::keccak_avx512 {

using Lanes = __m512i; // five words; the other three mean nothing

alignas(64) inline constexpr std::uint64_t roundConstants[24] = {
    0x0000000000000001, 0x0000000000008082, 0x800000000000808a, 0x8000000080008000, 0x000000000000808b,
    0x0000000080000001, 0x8000000080008081, 0x8000000000008009, 0x000000000000008a, 0x0000000000000088,
    0x0000000080008009, 0x000000008000000a, 0x000000008000808b, 0x800000000000008b, 0x8000000000008089,
    0x8000000000008003, 0x8000000000008002, 0x8000000000000080, 0x000000000000800a, 0x800000008000000a,
    0x8000000080008081, 0x8000000000008080, 0x0000000080000001, 0x8000000080008008,
};

// The order of lanes that moves lane t + count to lane t.
ISA_AVX512 ALWAYS_INLINE Lanes TurnBy(int count) {
    alignas(64) static constexpr std::uint64_t order[4][8] = {
        {1, 2, 3, 4, 0}, {2, 3, 4, 0, 1}, {3, 4, 0, 1, 2}, {4, 0, 1, 2, 3}};
    return _mm512_load_si512(order[count - 1]);
}

ISA_AVX512 ALWAYS_INLINE Lanes Turn(Lanes order, Lanes x) {
    return _mm512_permutexvar_epi64(order, x);
}

ISA_AVX512 ALWAYS_INLINE Lanes Xor(Lanes x, Lanes y) {
    return _mm512_xor_si512(x, y);
}

ISA_AVX512 ALWAYS_INLINE Lanes Xor(Lanes x, Lanes y, Lanes z) {
    return _mm512_ternarylogic_epi64(x, y, z, 0x96);
}

ISA_AVX512 ALWAYS_INLINE Lanes Rol1(Lanes x) {
    return _mm512_rol_epi64(x, 1);
}

ISA_AVX512 ALWAYS_INLINE Lanes Rol(Lanes x, const std::uint64_t (&counts)[8]) {
    return _mm512_rolv_epi64(x, _mm512_load_si512(counts));
}

// x ^ (~y & z)
ISA_AVX512 ALWAYS_INLINE Lanes Chi(Lanes x, Lanes y, Lanes z) {
    return _mm512_ternarylogic_epi64(x, y, z, 0xd2);
}

// The word at (0, 0) never leaves the first lane of the first vector.
ISA_AVX512 ALWAYS_INLINE Lanes Iota(Lanes x, int round) {
    const __m128i constant = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(roundConstants + round));
    return Xor(x, _mm512_zextsi128_si512(constant));
}

} // namespace fyrn::kernels::keccak_avx512
