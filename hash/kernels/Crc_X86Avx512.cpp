// SPDX-License-Identifier: MIT
// The folding of Crc_X86Pclmul.cpp with four pieces of 16 bytes in every register: four registers carry 256 bytes over
// the next 256. Both products and the data meet in one instruction. What the registers hold at the end is a message of
// 256 bytes with the same remainder, which goes the same way as the bytes that are left.
#include "hash/kernels/Crc.h"
#include "hash/kernels/Isa.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

constexpr std::size_t stride = 4 * 64;

ISA_AVX512_VPCLMUL ALWAYS_INLINE __m512i Load(const std::uint8_t* address) {
    return _mm512_loadu_si512(address);
}

ISA_AVX512_VPCLMUL ALWAYS_INLINE __m512i Fold(__m512i pieces, __m512i constants, __m512i data) {
    const __m512i first = _mm512_clmulepi64_epi128(pieces, constants, 0x00);
    const __m512i second = _mm512_clmulepi64_epi128(pieces, constants, 0x11);
    return _mm512_ternarylogic_epi64(first, second, data, 0x96); // the exclusive or of all three
}

ISA_AVX512_VPCLMUL ALWAYS_INLINE __m512i Register(std::uint64_t crc) {
    return _mm512_set_epi64(0, 0, 0, 0, 0, 0, 0, static_cast<long long>(crc));
}

} // namespace

ISA_AVX512_VPCLMUL std::uint64_t Crc_Bytes_X86Avx512(const CrcTables& tables, std::uint64_t crc,
                                                     const std::uint8_t* bytes, std::size_t count) {
    if (count < 2 * stride)
        return Crc_Bytes_X86Pclmul(tables, crc, bytes, count);

    __m512i sum0 = _mm512_xor_si512(Load(bytes), Register(crc));
    __m512i sum1 = Load(bytes + 64);
    __m512i sum2 = Load(bytes + 128);
    __m512i sum3 = Load(bytes + 192);
    const auto* const fold = reinterpret_cast<const __m128i*>(tables.folds[stride / 16 - 1]);
    const __m512i constants = _mm512_broadcast_i32x4(_mm_loadu_si128(fold));
    for (bytes += stride, count -= stride; count >= stride; bytes += stride, count -= stride) {
        sum0 = Fold(sum0, constants, Load(bytes));
        sum1 = Fold(sum1, constants, Load(bytes + 64));
        sum2 = Fold(sum2, constants, Load(bytes + 128));
        sum3 = Fold(sum3, constants, Load(bytes + 192));
    }

    std::uint8_t rest[stride];
    _mm512_storeu_si512(rest, sum0);
    _mm512_storeu_si512(rest + 64, sum1);
    _mm512_storeu_si512(rest + 128, sum2);
    _mm512_storeu_si512(rest + 192, sum3);
    return Crc_Bytes_X86Pclmul(tables, Crc_Bytes_X86Pclmul(tables, 0, rest, stride), bytes, count);
}

} // namespace fyrn::kernels
