// SPDX-License-Identifier: MIT
// Whirlpool with AVX2, without tables larger than a register.
//
// The matrix is held by columns: column j is the 64-bit word j of two vectors, with row i in its byte i. Then
// - the S-box is made of its mini-boxes, each a byte shuffle. With E(high) and E'(low) for the nibbles of x, and
//   w = R(E(high) ^ E'(low)), the result is E(E(high) ^ w) in the high and E'(E'(low) ^ w) in the low nibble. The last
//   step has both nibbles apart, so tables of 16 bytes can give the product with any factor at the same price: the
//   multiplications by 2, 4 and 8 cost two shuffles and a xor each, less than doublings;
// - shifting column j down by j is a rotation within a word: one byte shuffle, which may come before the S-box;
// - the circulant (1, 1, 4, 1, 8, 5, 2, 9) combines columns. With x_d for the columns moved round by d places, column c
//   taking the place of column c - d, the result is
//       e + o_1,   e = (x + 8 x_4) + (2 x + 4 x_4)_2,   o = (9 x + x_4) + (5 x + x_4)_2.
//   x_4 is the other of the two vectors, and x + x_4 is the same for both.
// Key and state are two chains of that kind, which run side by side.
#include "hash/kernels/Isa.h"
#include "hash/kernels/Whirlpool.h"
#include "hash/kernels/WhirlpoolTables.h"

#include <immintrin.h>

namespace fyrn::kernels {
namespace {

using Vector = __m256i;

struct alignas(32) VectorBytes {
    std::uint8_t byte[32];
};

// A mini-box for both halves of a vector, its entries moved up by `shift` bits and multiplied by `factor`.
constexpr VectorBytes Repeat(const whirlpool::MiniBox& box, unsigned int shift = 0, unsigned int factor = 1) {
    VectorBytes bytes{};
    for (unsigned int i = 0; i < 32; ++i)
        bytes.byte[i] = whirlpool::Multiply(static_cast<unsigned int>(box[i % 16]) << shift, factor);
    return bytes;
}

constexpr VectorBytes boxE = Repeat(whirlpool::boxE);
constexpr VectorBytes boxInverseE = Repeat(whirlpool::boxInverseE);
constexpr VectorBytes boxR = Repeat(whirlpool::boxR);
template <unsigned int factor>
constexpr VectorBytes highProduct = Repeat(whirlpool::boxE, 4, factor);
template <unsigned int factor>
constexpr VectorBytes lowProduct = Repeat(whirlpool::boxInverseE, 0, factor);

// The order that moves each of the four columns from firstColumn on down by its number.
constexpr VectorBytes ColumnShift(unsigned int firstColumn) {
    VectorBytes order{};
    for (unsigned int i = 0; i < 32; ++i) {
        const unsigned int column = firstColumn + i / 8;
        order.byte[i] = static_cast<std::uint8_t>(i / 8 % 2 * 8 + (i + 8 - column) % 8);
    }
    return order;
}

constexpr VectorBytes firstShift = ColumnShift(0);
constexpr VectorBytes secondShift = ColumnShift(4);

// The round constants by columns: byte j of the constant is row 0 of column j.
struct alignas(32) ConstantColumns {
    std::uint64_t column[10][8];
};

constexpr ConstantColumns roundConstants = [] {
    constexpr auto rows = whirlpool::DeriveRoundConstants();
    ConstantColumns constants{};
    for (unsigned int round = 0; round < 10; ++round)
        for (unsigned int j = 0; j < 8; ++j)
            constants.column[round][j] = rows[round] >> (56 - 8 * j) & 0xff;
    return constants;
}();

struct Matrix {
    Vector first;  // columns 0 to 3, or rows 0 to 3
    Vector second; // columns or rows 4 to 7
};

ISA_AVX2 ALWAYS_INLINE Vector Load(const void* bytes) {
    return _mm256_loadu_si256(static_cast<const Vector*>(bytes));
}

ISA_AVX2 ALWAYS_INLINE Vector Xor(Vector x, Vector y) {
    return _mm256_xor_si256(x, y);
}

ISA_AVX2 ALWAYS_INLINE Matrix Xor(const Matrix& x, const Matrix& y) {
    return {Xor(x.first, y.first), Xor(x.second, y.second)};
}

ISA_AVX2 ALWAYS_INLINE Vector LookUp(const VectorBytes& box, Vector nibbles) {
    return _mm256_shuffle_epi8(Load(box.byte), nibbles);
}

// The S-box of every byte, times 1, 2, 4 and 8.
struct Products {
    Vector x1, x2, x4, x8;
};

template <unsigned int factor>
ISA_AVX2 ALWAYS_INLINE Vector Product(Vector high, Vector low) {
    return Xor(LookUp(highProduct<factor>, high), LookUp(lowProduct<factor>, low));
}

ISA_AVX2 ALWAYS_INLINE Products Substitute(Vector x) {
    const Vector nibble = _mm256_set1_epi8(15);
    const Vector high = LookUp(boxE, _mm256_and_si256(_mm256_srli_epi16(x, 4), nibble));
    const Vector low = LookUp(boxInverseE, _mm256_and_si256(x, nibble));
    const Vector joint = LookUp(boxR, Xor(high, low));
    const Vector h = Xor(high, joint);
    const Vector l = Xor(low, joint);
    return {Product<1>(h, l), Product<2>(h, l), Product<4>(h, l), Product<8>(h, l)};
}

// The columns 2 to 5 of eight, of which `near` holds the first four.
ISA_AVX2 ALWAYS_INLINE Vector MoveBy2(Vector near, Vector far) {
    return _mm256_permute2x128_si256(near, far, 0x21);
}

// One round without the key.
ISA_AVX2 ALWAYS_INLINE Matrix Transform(const Matrix& matrix) {
    const Products a = Substitute(_mm256_shuffle_epi8(matrix.first, Load(firstShift.byte)));
    const Products b = Substitute(_mm256_shuffle_epi8(matrix.second, Load(secondShift.byte)));
    const Vector both = Xor(a.x1, b.x1);
    const Vector evenA = Xor(Xor(a.x1, b.x8), MoveBy2(Xor(a.x2, b.x4), Xor(b.x2, a.x4)));
    const Vector evenB = Xor(Xor(b.x1, a.x8), MoveBy2(Xor(b.x2, a.x4), Xor(a.x2, b.x4)));
    const Vector oddA = Xor(Xor(both, a.x8), MoveBy2(Xor(both, a.x4), Xor(both, b.x4)));
    const Vector oddB = Xor(Xor(both, b.x8), MoveBy2(Xor(both, b.x4), Xor(both, a.x4)));
    return {Xor(evenA, _mm256_alignr_epi8(MoveBy2(oddA, oddB), oddA, 8)),
            Xor(evenB, _mm256_alignr_epi8(MoveBy2(oddB, oddA), oddB, 8))};
}

// Rows to columns and back.
ISA_AVX2 ALWAYS_INLINE Matrix Transpose(const Matrix& matrix) {
    const Vector pairs = _mm256_broadcastsi128_si256(_mm_set_epi64x(0x0f070e060d050c04, 0x0b030a0209010800));
    const Vector a = _mm256_shuffle_epi8(matrix.first, pairs);
    const Vector b = _mm256_shuffle_epi8(matrix.second, pairs);
    const Vector rows01and45 = _mm256_permute2x128_si256(a, b, 0x20);
    const Vector rows23and67 = _mm256_permute2x128_si256(a, b, 0x31);
    // Half columns of four rows each: columns 0 to 3 of rows 0 to 3 and of rows 4 to 7, then columns 4 to 7.
    const Vector halves0to3 = _mm256_unpacklo_epi16(rows01and45, rows23and67);
    const Vector halves4to7 = _mm256_unpackhi_epi16(rows01and45, rows23and67);
    const Vector join = _mm256_set_epi32(7, 3, 6, 2, 5, 1, 4, 0);
    return {_mm256_permutevar8x32_epi32(halves0to3, join), _mm256_permutevar8x32_epi32(halves4to7, join)};
}

// The state's words have the first byte highest.
ISA_AVX2 ALWAYS_INLINE Vector SwapBytes(Vector words) {
    const Vector order = _mm256_broadcastsi128_si256(_mm_set_epi64x(0x08090a0b0c0d0e0f, 0x0001020304050607));
    return _mm256_shuffle_epi8(words, order);
}

ISA_AVX2 ALWAYS_INLINE Matrix CompressBlock(const Matrix& state, const std::uint8_t* block) {
    const Matrix message = Transpose({Load(block), Load(block + 32)});
    const Matrix start = Xor(message, state);
    Matrix key = state;
    Matrix cipher = start;
    for (const auto& constant : roundConstants.column) {
        key = Xor(Transform(key), {Load(constant), Load(constant + 4)});
        cipher = Xor(Transform(cipher), key);
    }
    return Xor(cipher, start); // Miyaguchi-Preneel: the cipher's result, the block and the old state
}

} // namespace

ISA_AVX2 void Whirlpool_Blocks_X86Avx2(std::uint64_t state[8], const std::uint8_t* blocks,
                                       std::size_t count) {
    Matrix columns = Transpose({SwapBytes(Load(state)), SwapBytes(Load(state + 4))});
    for (; count != 0; --count, blocks += 64)
        columns = CompressBlock(columns, blocks);
    const Matrix rows = Transpose(columns);
    _mm256_storeu_si256(reinterpret_cast<Vector*>(state), SwapBytes(rows.first));
    _mm256_storeu_si256(reinterpret_cast<Vector*>(state + 4), SwapBytes(rows.second));
}

} // namespace fyrn::kernels
