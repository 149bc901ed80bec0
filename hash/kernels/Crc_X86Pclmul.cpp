// SPDX-License-Identifier: MIT
// CRC by carry-less multiplication, for any polynomial of any width.
//
// A message is a polynomial over GF(2), and a CRC depends only on its remainder. 16 bytes followed by N more bits may
// therefore be replaced by anything congruent to (those 16 bytes) * x^N, as long as it is added to what stands N bits
// further on: the product of each half with x^N modulo the CRC's polynomial has 128 bits at the most and fits into the
// 16 bytes that stand there. Bits are reflected, so a product comes out multiplied by one more x, which the constants
// allow for. Eight such sums of 16 bytes run side by side, because a multiplication takes longer than the next one has
// to wait. In the end they are folded into one, whose remainder the byte tables give; nothing is divided by x or by the
// polynomial, so polynomials without constant term and even 0 need no care.
#include "hash/kernels/Crc.h"
#include "hash/kernels/Isa.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

constexpr std::size_t lanes = 8;
constexpr std::size_t stride = 16 * lanes;

ISA_PCLMUL ALWAYS_INLINE __m128i Load(const void* address) {
    return _mm_loadu_si128(static_cast<const __m128i*>(address));
}

// Carries `piece` over the distance of the constants and adds it to `data`.
ISA_PCLMUL ALWAYS_INLINE __m128i Fold(__m128i piece, __m128i constants, __m128i data) {
    const __m128i first = _mm_clmulepi64_si128(piece, constants, 0x00);
    const __m128i second = _mm_clmulepi64_si128(piece, constants, 0x11);
    return _mm_xor_si128(_mm_xor_si128(first, second), data);
}

} // namespace

ISA_PCLMUL std::uint64_t Crc_Bytes_X86Pclmul(const CrcTables& tables, std::uint64_t crc,
                                             const std::uint8_t* bytes, std::size_t count) {
    if (count < stride)
        return Crc_Bytes_Portable(tables, crc, bytes, count);

    __m128i sums[lanes];
    for (std::size_t i = 0; i < lanes; ++i)
        sums[i] = Load(bytes + 16 * i);
    sums[0] = _mm_xor_si128(sums[0], _mm_cvtsi64_si128(static_cast<long long>(crc)));
    const __m128i constants = Load(tables.folds[lanes - 1]);
    for (bytes += stride, count -= stride; count >= stride; bytes += stride, count -= stride)
        for (std::size_t i = 0; i < lanes; ++i)
            sums[i] = Fold(sums[i], constants, Load(bytes + 16 * i));

    __m128i sum = sums[lanes - 1];
    for (std::size_t i = 0; i < lanes - 1; ++i)
        sum = Fold(sums[i], Load(tables.folds[lanes - 2 - i]), sum);
    std::uint8_t remainder[16];
    _mm_storeu_si128(reinterpret_cast<__m128i*>(remainder), sum);
    return Crc_Bytes_Portable(tables, Crc_Bytes_Portable(tables, 0, remainder, sizeof remainder), bytes,
                              count);
}

} // namespace fyrn::kernels
