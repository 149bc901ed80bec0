// SPDX-License-Identifier: MIT
// Many messages side by side with AVX-512: a vector holds the same word of 16 messages, or of 8 where words have 64
// bits. Any function of three words is one instruction, and so is a rotation.
#pragma once

#include "hash/kernels/Isa.h"

#include <immintrin.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

#define ISA_LANES ISA_AVX512

namespace fyrn::kernels {
namespace {

// Where sixteen bytes of a message or of a state are.
template <class T>
ALWAYS_INLINE auto* PieceOf(T* message, std::size_t offset) {
    if constexpr (std::is_const_v<T>)
        return reinterpret_cast<const __m128i*>(reinterpret_cast<const std::uint8_t*>(message) + offset);
    else
        return reinterpret_cast<__m128i*>(reinterpret_cast<std::uint8_t*>(message) + offset);
}

using Register = __m512i;

// One word of each message.
template <class T>
struct Words {
    using Word = T;
    static constexpr std::size_t lanes = sizeof(Register) / sizeof(T);
    Register all;
};

template <class T>
inline constexpr bool isShort = sizeof(T) == 4;

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> operator+(Words<T> x, Words<T> y) {
    return {isShort<T> ? _mm512_add_epi32(x.all, y.all) : _mm512_add_epi64(x.all, y.all)};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> operator-(Words<T> x, Words<T> y) {
    return {isShort<T> ? _mm512_sub_epi32(x.all, y.all) : _mm512_sub_epi64(x.all, y.all)};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> operator^(Words<T> x, Words<T> y) {
    return {_mm512_xor_si512(x.all, y.all)};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> operator&(Words<T> x, Words<T> y) {
    return {_mm512_and_si512(x.all, y.all)};
}

// The result of three bits is the bit of the table that they number, that of x being the highest.
template <int table, class T>
ISA_LANES ALWAYS_INLINE Words<T> Ternary(Words<T> x, Words<T> y, Words<T> z) {
    return {_mm512_ternarylogic_epi32(x.all, y.all, z.all, table)};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> Xor(Words<T> x, Words<T> y, Words<T> z) {
    return Ternary<0x96>(x, y, z);
}

// Each bit of y where x has a one, of z where it has a zero.
template <class T>
ISA_LANES ALWAYS_INLINE Words<T> Choose(Words<T> x, Words<T> y, Words<T> z) {
    return Ternary<0xca>(x, y, z);
}

// Of x, y and z; takes also x ^ y and y ^ z, which help where there is no ternary logic.
template <class T>
ISA_LANES ALWAYS_INLINE Words<T> Majority(Words<T> x, Words<T> y, Words<T> z, Words<T>, Words<T>) {
    return Ternary<0xe8>(x, y, z);
}

// x ^ (~y & z)
template <class T>
ISA_LANES ALWAYS_INLINE Words<T> XorNotAnd(Words<T> x, Words<T> y, Words<T> z) {
    return Ternary<0xd2>(x, y, z);
}

template <int count, class T>
ISA_LANES ALWAYS_INLINE Words<T> RotateLeft(Words<T> x) {
    if constexpr (isShort<T>)
        return {_mm512_rol_epi32(x.all, count)};
    else
        return {_mm512_rol_epi64(x.all, count)};
}

template <int count, class T>
ISA_LANES ALWAYS_INLINE Words<T> ShiftRight(Words<T> x) {
    if constexpr (isShort<T>)
        return {_mm512_srli_epi32(x.all, count)};
    else
        return {_mm512_srli_epi64(x.all, count)};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> Broadcast(T word) {
    return {isShort<T> ? _mm512_set1_epi32(static_cast<int>(word))
                       : _mm512_set1_epi64(static_cast<long long>(word))};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> ReverseBytes(Words<T> x) {
    const __m128i order = isShort<T> ? _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203)
                                     : _mm_set_epi64x(0x08090a0b0c0d0e0f, 0x0001020304050607);
    return {_mm512_shuffle_epi8(x.all, _mm512_broadcast_i32x4(order))};
}

ISA_LANES ALWAYS_INLINE Register UnpackLow32(Register x, Register y) {
    return _mm512_unpacklo_epi32(x, y);
}

ISA_LANES ALWAYS_INLINE Register UnpackHigh32(Register x, Register y) {
    return _mm512_unpackhi_epi32(x, y);
}

ISA_LANES ALWAYS_INLINE Register UnpackLow64(Register x, Register y) {
    return _mm512_unpacklo_epi64(x, y);
}

ISA_LANES ALWAYS_INLINE Register UnpackHigh64(Register x, Register y) {
    return _mm512_unpackhi_epi64(x, y);
}

// Sixteen bytes each of every fourth message, or of every second, behind one another.
template <std::size_t step, class T>
ISA_LANES ALWAYS_INLINE Register LoadPieces(T* const messages[], std::size_t offset) {
    Register x = _mm512_castsi128_si512(_mm_loadu_si128(PieceOf(messages[0], offset)));
    x = _mm512_inserti32x4(x, _mm_loadu_si128(PieceOf(messages[step], offset)), 1);
    x = _mm512_inserti32x4(x, _mm_loadu_si128(PieceOf(messages[2 * step], offset)), 2);
    return _mm512_inserti32x4(x, _mm_loadu_si128(PieceOf(messages[3 * step], offset)), 3);
}

template <std::size_t step, class T>
ISA_LANES ALWAYS_INLINE void StorePieces(T* const messages[], std::size_t offset, Register x) {
    _mm_storeu_si128(PieceOf(messages[0], offset), _mm512_castsi512_si128(x));
    _mm_storeu_si128(PieceOf(messages[step], offset), _mm512_extracti32x4_epi32(x, 1));
    _mm_storeu_si128(PieceOf(messages[2 * step], offset), _mm512_extracti32x4_epi32(x, 2));
    _mm_storeu_si128(PieceOf(messages[3 * step], offset), _mm512_extracti32x4_epi32(x, 3));
}

} // namespace
} // namespace fyrn::kernels

#include "hash/kernels/Lanes_X86.h"
