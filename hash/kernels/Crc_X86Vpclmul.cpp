// SPDX-License-Identifier: MIT
// The folding of Crc_X86Pclmul.cpp with two pieces of 16 bytes in every register: eight registers carry 256 bytes over
// the next 256. What they hold at the end is a message of 256 bytes with the same remainder, which goes the same way as
// the bytes that are left.
#include "hash/kernels/Crc.h"
#include "hash/kernels/Isa.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

constexpr std::size_t lanes = 8;
constexpr std::size_t stride = 32 * lanes;

ISA_VPCLMUL ALWAYS_INLINE __m256i Load(const std::uint8_t* address) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(address));
}

ISA_VPCLMUL ALWAYS_INLINE __m256i Fold(__m256i pieces, __m256i constants, __m256i data) {
    const __m256i first = _mm256_clmulepi64_epi128(pieces, constants, 0x00);
    const __m256i second = _mm256_clmulepi64_epi128(pieces, constants, 0x11);
    return _mm256_xor_si256(_mm256_xor_si256(first, second), data);
}

ISA_VPCLMUL ALWAYS_INLINE __m256i Register(std::uint64_t crc) {
    return _mm256_set_epi64x(0, 0, 0, static_cast<long long>(crc));
}

} // namespace

ISA_VPCLMUL std::uint64_t Crc_Bytes_X86Vpclmul(const CrcTables& tables, std::uint64_t crc,
                                               const std::uint8_t* bytes, std::size_t count) {
    if (count < 2 * stride)
        return Crc_Bytes_X86Pclmul(tables, crc, bytes, count);

    __m256i sums[lanes];
    for (std::size_t i = 0; i < lanes; ++i)
        sums[i] = Load(bytes + 32 * i);
    sums[0] = _mm256_xor_si256(sums[0], Register(crc));
    const auto* const fold = reinterpret_cast<const __m128i*>(tables.folds[2 * lanes - 1]);
    const __m256i constants = _mm256_broadcastsi128_si256(_mm_loadu_si128(fold));
    for (bytes += stride, count -= stride; count >= stride; bytes += stride, count -= stride)
        for (std::size_t i = 0; i < lanes; ++i)
            sums[i] = Fold(sums[i], constants, Load(bytes + 32 * i));

    std::uint8_t rest[stride];
    for (std::size_t i = 0; i < lanes; ++i)
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(rest + 32 * i), sums[i]);
    return Crc_Bytes_X86Pclmul(tables, Crc_Bytes_X86Pclmul(tables, 0, rest, stride), bytes, count);
}

} // namespace fyrn::kernels
