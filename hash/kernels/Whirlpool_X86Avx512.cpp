// SPDX-License-Identifier: MIT
// Whirlpool with AVX-512, VBMI and GFNI: the matrix of the state in one vector and that of the key in
// another, row i in the 64-bit word i, column j in its byte j.
// - The S-box is two look-ups in 128 bytes each; the highest bit of a byte chooses between them.
// - Shifting column j down by j is one byte shuffle over the whole vector, and comes before the S-box.
// - The circulant (1, 1, 4, 1, 8, 5, 2, 9) combines the bytes of a row. With x_d for the row turned by d
//   bytes, the result is
//       e + o_1,   e = x + 4 x_2 + 8 x_4 + 2 x_6,   o = x + x_2 + 5 x_4 + 9 x_6,
//   four turns in place of seven. A multiplication is one product with a matrix of bits.
// Key and state are two chains of that kind, which run side by side.
#include "hash/kernels/Isa.h"
#include "hash/kernels/Whirlpool.h"
#include "hash/kernels/WhirlpoolTables.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

using Matrix = __m512i;

struct alignas(64) MatrixBytes {
    std::uint8_t byte[64];
};

constexpr auto sBox = whirlpool::DeriveSBox();

// 64 entries of the S-box.
constexpr MatrixBytes QuarterOfSBox(unsigned int quarter) {
    MatrixBytes bytes{};
    for (unsigned int i = 0; i < 64; ++i)
        bytes.byte[i] = sBox[64 * quarter + i];
    return bytes;
}

constexpr MatrixBytes sBoxQuarters[4] = {QuarterOfSBox(0), QuarterOfSBox(1), QuarterOfSBox(2),
                                         QuarterOfSBox(3)};

// Where each byte comes from when column j moves down by j.
constexpr MatrixBytes columnShift = [] {
    MatrixBytes order{};
    for (unsigned int row = 0; row < 8; ++row)
        for (unsigned int column = 0; column < 8; ++column)
            order.byte[8 * row + column] = static_cast<std::uint8_t>(8 * ((row + 8 - column) % 8) + column);
    return order;
}();

// The order that turns the bytes of each row round.
constexpr MatrixBytes swappedBytes = [] {
    MatrixBytes order{};
    for (unsigned int i = 0; i < 64; ++i)
        order.byte[i] = static_cast<std::uint8_t>(i ^ 7);
    return order;
}();

// A multiplication as a matrix of bits: byte 7 - i, for bit i of the product, has bit j set when bit j of
// the other factor counts there.
constexpr std::uint64_t BitsOfProduct(unsigned int factor) {
    std::uint64_t bits = 0;
    for (unsigned int i = 0; i < 8; ++i)
        for (unsigned int j = 0; j < 8; ++j)
            bits |= static_cast<std::uint64_t>(whirlpool::Multiply(1u << j, factor) >> i & 1)
                    << (8 * (7 - i) + j);
    return bits;
}

// The words of the state have the first byte of a row highest, vectors have it lowest.
constexpr std::array<std::uint64_t, 10> roundConstants = [] {
    std::array<std::uint64_t, 10> constants = whirlpool::DeriveRoundConstants();
    for (std::uint64_t& constant : constants)
        constant = __builtin_bswap64(constant);
    return constants;
}();

ISA_AVX512_VBMI_GFNI ALWAYS_INLINE Matrix Load(const void* bytes) {
    return _mm512_loadu_si512(bytes);
}

ISA_AVX512_VBMI_GFNI ALWAYS_INLINE Matrix Xor(Matrix x, Matrix y) {
    return _mm512_xor_si512(x, y);
}

ISA_AVX512_VBMI_GFNI ALWAYS_INLINE Matrix Xor(Matrix x, Matrix y, Matrix z) {
    return _mm512_ternarylogic_epi64(x, y, z, 0x96);
}

template <unsigned int factor>
ISA_AVX512_VBMI_GFNI ALWAYS_INLINE Matrix Times(Matrix x) {
    return _mm512_gf2p8affine_epi64_epi8(x, _mm512_set1_epi64(static_cast<long long>(BitsOfProduct(factor))),
                                         0);
}

ISA_AVX512_VBMI_GFNI ALWAYS_INLINE Matrix Substitute(Matrix x) {
    const Matrix low = _mm512_permutex2var_epi8(Load(sBoxQuarters[0].byte), x, Load(sBoxQuarters[1].byte));
    const Matrix high = _mm512_permutex2var_epi8(Load(sBoxQuarters[2].byte), x, Load(sBoxQuarters[3].byte));
    return _mm512_mask_blend_epi8(_mm512_movepi8_mask(x), low, high);
}

// One round with its key, which is added last, since it is often ready last.
ISA_AVX512_VBMI_GFNI ALWAYS_INLINE Matrix Round(Matrix matrix, Matrix key) {
    const Matrix x = Substitute(_mm512_permutexvar_epi8(Load(columnShift.byte), matrix));
    const Matrix x2 = _mm512_rol_epi64(x, 16);
    const Matrix x4 = _mm512_rol_epi64(x, 32);
    const Matrix x6 = _mm512_rol_epi64(x, 48);
    const Matrix even = Xor(Xor(Times<4>(x2), x), Times<8>(x4), Times<2>(x6));
    const Matrix odd = Xor(Xor(x, x2), Times<5>(x4), Times<9>(x6));
    return Xor(_mm512_rol_epi64(odd, 8), even, key);
}

ISA_AVX512_VBMI_GFNI ALWAYS_INLINE Matrix ConstantOfRound(const std::uint64_t& constant) {
    return _mm512_zextsi128_si512(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(&constant)));
}

ISA_AVX512_VBMI_GFNI ALWAYS_INLINE Matrix CompressBlock(Matrix state, Matrix message) {
    const Matrix start = Xor(message, state);
    Matrix key = state;
    Matrix cipher = start;
    for (const std::uint64_t& constant : roundConstants) {
        key = Round(key, ConstantOfRound(constant));
        cipher = Round(cipher, key);
    }
    return Xor(cipher, start); // Miyaguchi-Preneel: the cipher's result, the block and the old state
}

ISA_AVX512_VBMI_GFNI ALWAYS_INLINE Matrix SwapBytes(Matrix words) {
    return _mm512_shuffle_epi8(words, Load(swappedBytes.byte));
}

} // namespace

ISA_AVX512_VBMI_GFNI void Whirlpool_Blocks_X86Avx512(std::uint64_t state[8], const std::uint8_t* blocks,
                                                     std::size_t count) {
    Matrix rows = SwapBytes(Load(state));
    for (; count != 0; --count, blocks += 64)
        rows = CompressBlock(rows, Load(blocks));
    _mm512_storeu_si512(state, SwapBytes(rows));
}

} // namespace fyrn::kernels
