// SPDX-License-Identifier: MIT
// Many messages side by side with AVX2: a vector holds the same word of 8 messages, or of 4 where words have 64 bits.
#pragma once

#include "hash/kernels/Isa.h"

#include <immintrin.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#define ISA_LANES ISA_AVX2

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

using Register = __m256i;

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
    return {isShort<T> ? _mm256_add_epi32(x.all, y.all) : _mm256_add_epi64(x.all, y.all)};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> operator-(Words<T> x, Words<T> y) {
    return {isShort<T> ? _mm256_sub_epi32(x.all, y.all) : _mm256_sub_epi64(x.all, y.all)};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> operator^(Words<T> x, Words<T> y) {
    return {_mm256_xor_si256(x.all, y.all)};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> operator&(Words<T> x, Words<T> y) {
    return {_mm256_and_si256(x.all, y.all)};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> Xor(Words<T> x, Words<T> y, Words<T> z) {
    return x ^ (y ^ z);
}

// Each bit of y where x has a one, of z where it has a zero.
template <class T>
ISA_LANES ALWAYS_INLINE Words<T> Choose(Words<T> x, Words<T> y, Words<T> z) {
    return z ^ (x & (y ^ z));
}

// Of x, y and z, from x ^ y and y ^ z.
template <class T>
ISA_LANES ALWAYS_INLINE Words<T> Majority(Words<T>, Words<T> y, Words<T>, Words<T> xXorY, Words<T> yXorZ) {
    return y ^ (xXorY & yXorZ);
}

// x ^ (~y & z)
template <class T>
ISA_LANES ALWAYS_INLINE Words<T> XorNotAnd(Words<T> x, Words<T> y, Words<T> z) {
    return x ^ Words<T>{_mm256_andnot_si256(y.all, z.all)};
}

template <int count, class T>
ISA_LANES ALWAYS_INLINE Words<T> ShiftRight(Words<T> x) {
    if constexpr (isShort<T>)
        return {_mm256_srli_epi32(x.all, count)};
    else
        return {_mm256_srli_epi64(x.all, count)};
}

template <int count, class T>
ISA_LANES ALWAYS_INLINE Words<T> ShiftLeft(Words<T> x) {
    if constexpr (count == 1)
        return x + x;
    else
        return {isShort<T> ? _mm256_slli_epi32(x.all, count) : _mm256_slli_epi64(x.all, count)};
}

// The bytes of each word, the lowest first, come from those that the bytes of the order number.
template <class T>
ISA_LANES ALWAYS_INLINE Words<T> ShuffleBytes(Words<T> x, std::uint64_t order) {
    const std::uint64_t second = order + 0x0808080808080808;
    return {_mm256_shuffle_epi8(x.all, _mm256_broadcastsi128_si256(_mm_set_epi64x(
                                           static_cast<long long>(second), static_cast<long long>(order))))};
}

// Whole bytes are moved by a shuffle.
template <int count, class T>
ISA_LANES ALWAYS_INLINE Words<T> RotateLeft(Words<T> x) {
    constexpr int bits = 8 * sizeof(T);
    if constexpr (isShort<T> && count == 8)
        return ShuffleBytes(x, 0x0605040702010003);
    else if constexpr (isShort<T> && count == 16)
        return ShuffleBytes(x, 0x0504070601000302);
    else if constexpr (isShort<T> && count == 24)
        return ShuffleBytes(x, 0x0407060500030201);
    else if constexpr (!isShort<T> && count == 32)
        return {_mm256_shuffle_epi32(x.all, 0xb1)};
    else if constexpr (!isShort<T> && count % 8 == 0)
        return ShuffleBytes(x, std::rotl(std::uint64_t{0x0706050403020100}, count));
    else
        return ShiftLeft<count>(x) ^ ShiftRight<bits - count>(x);
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> Broadcast(T word) {
    return {isShort<T> ? _mm256_set1_epi32(static_cast<int>(word))
                       : _mm256_set1_epi64x(static_cast<long long>(word))};
}

template <class T>
ISA_LANES ALWAYS_INLINE Words<T> ReverseBytes(Words<T> x) {
    return ShuffleBytes(x, isShort<T> ? 0x0405060700010203 : 0x0001020304050607);
}

ISA_LANES ALWAYS_INLINE Register UnpackLow32(Register x, Register y) {
    return _mm256_unpacklo_epi32(x, y);
}

ISA_LANES ALWAYS_INLINE Register UnpackHigh32(Register x, Register y) {
    return _mm256_unpackhi_epi32(x, y);
}

ISA_LANES ALWAYS_INLINE Register UnpackLow64(Register x, Register y) {
    return _mm256_unpacklo_epi64(x, y);
}

ISA_LANES ALWAYS_INLINE Register UnpackHigh64(Register x, Register y) {
    return _mm256_unpackhi_epi64(x, y);
}

// Sixteen bytes each of two messages, behind one another.
template <std::size_t step, class T>
ISA_LANES ALWAYS_INLINE Register LoadPieces(T* const messages[], std::size_t offset) {
    const Register low = _mm256_castsi128_si256(_mm_loadu_si128(PieceOf(messages[0], offset)));
    return _mm256_inserti128_si256(low, _mm_loadu_si128(PieceOf(messages[step], offset)), 1);
}

template <std::size_t step, class T>
ISA_LANES ALWAYS_INLINE void StorePieces(T* const messages[], std::size_t offset, Register x) {
    _mm_storeu_si128(PieceOf(messages[0], offset), _mm256_castsi256_si128(x));
    _mm_storeu_si128(PieceOf(messages[step], offset), _mm256_extracti128_si256(x, 1));
}

} // namespace
} // namespace fyrn::kernels

#include "hash/kernels/Lanes_X86.h"
