// SPDX-License-Identifier: MIT
#include "tests/reference/Whirlpool.h"

#include <algorithm>

namespace reference {
namespace {

using Matrix = WhirlpoolMatrix;

constexpr int exponential[16] = {0x1, 0xB, 0x9, 0xC, 0xD, 0x6, 0xF, 0x3,
                                 0xE, 0x8, 0x7, 0x4, 0xA, 0x2, 0x5, 0x0};
constexpr int random[16] = {0x7, 0xC, 0xB, 0xD, 0xE, 0x4, 0x9, 0xF, 0x6, 0x3, 0x8, 0xA, 0x2, 0x5, 0x1, 0x0};

int InverseExponential(int value) {
    return static_cast<int>(std::find(exponential, exponential + 16, value) - exponential);
}

std::uint8_t SBoxEntry(std::uint8_t value) {
    const int upper = exponential[value >> 4];
    const int lower = InverseExponential(value & 15);
    const int middle = random[upper ^ lower];
    return static_cast<std::uint8_t>(16 * exponential[upper ^ middle] + InverseExponential(lower ^ middle));
}

// The product in GF(2^8) modulo x^8 + x^4 + x^3 + x^2 + 1: shift and add, then divide.
int Product(int a, int b) {
    int product = 0;
    for (int bit = 0; bit < 8; ++bit)
        product ^= (b >> bit & 1) * (a << bit);
    for (int bit = 14; bit >= 8; --bit)
        product ^= (product >> bit & 1) * (0x11D << (bit - 8));
    return product;
}

// What a byte of the state adds to its row: its products with the circulant constants, for every byte and worked out
// once, because a block needs 1280 of them.
using Products = std::array<std::uint8_t, 8>;

const Products& CirculantProducts(std::uint8_t byte) {
    static constexpr int circulant[8] = {1, 1, 4, 1, 8, 5, 2, 9};
    static const auto table = [] {
        std::array<Products, 256> products;
        for (std::size_t i = 0; i < 256; ++i)
            for (std::size_t j = 0; j < 8; ++j)
                products[i][j] = static_cast<std::uint8_t>(Product(static_cast<int>(i), circulant[j]));
        return products;
    }();
    return table[byte];
}

Matrix Add(const Matrix& a, const Matrix& b) {
    Matrix sum;
    for (std::size_t i = 0; i < 8; ++i)
        for (std::size_t j = 0; j < 8; ++j)
            sum[i][j] = a[i][j] ^ b[i][j];
    return sum;
}

// One round: the non-linear layer, the cyclic permutation of each column, the
// diffusion layer and the addition of the key.
Matrix Round(const Matrix& state, const Matrix& key) {
    Matrix permuted;
    for (std::size_t i = 0; i < 8; ++i)
        for (std::size_t j = 0; j < 8; ++j)
            permuted[i][j] = WhirlpoolSBox(state[(i + 8 - j) % 8][j]);
    Matrix diffused{};
    for (std::size_t i = 0; i < 8; ++i)
        for (std::size_t k = 0; k < 8; ++k) {
            const Products& products = CirculantProducts(permuted[i][k]);
            for (std::size_t j = 0; j < 8; ++j)
                diffused[i][j] ^= products[(j + 8 - k) % 8];
        }
    return Add(diffused, key);
}

Matrix RoundConstant(std::size_t round) {
    Matrix constant{};
    for (std::size_t j = 0; j < 8; ++j)
        constant[0][j] = WhirlpoolSBox(static_cast<std::uint8_t>(8 * (round - 1) + j));
    return constant;
}

Matrix ToMatrix(std::span<const std::uint8_t, 64> block) {
    Matrix matrix;
    for (std::size_t i = 0; i < 64; ++i)
        matrix[i / 8][i % 8] = block[i];
    return matrix;
}

} // namespace

std::uint8_t WhirlpoolSBox(std::uint8_t value) {
    static const auto box = [] {
        std::array<std::uint8_t, 256> entries;
        for (std::size_t i = 0; i < entries.size(); ++i)
            entries[i] = SBoxEntry(static_cast<std::uint8_t>(i));
        return entries;
    }();
    return box[value];
}

void WhirlpoolCompress(Matrix& state, std::span<const std::uint8_t, 64> block) {
    Matrix key = state;
    Matrix cipher = Add(ToMatrix(block), key);
    for (std::size_t round = 1; round <= 10; ++round) {
        key = Round(key, RoundConstant(round));
        cipher = Round(cipher, key);
    }
    state = Add(Add(cipher, state), ToMatrix(block));
}

std::vector<std::uint8_t> WhirlpoolOfBits(std::span<const std::uint8_t> message, std::size_t bits,
                                          const std::array<std::uint8_t, 32>& length) {
    std::vector<std::uint8_t> padded(message.begin(),
                                     message.begin() + static_cast<std::ptrdiff_t>(bits / 8));
    const std::size_t rest = bits % 8;
    const int kept = rest == 0 ? 0 : message[bits / 8] & ~(0xFF >> rest);
    padded.push_back(static_cast<std::uint8_t>(kept | 0x80 >> rest));
    while (padded.size() % 64 != 32)
        padded.push_back(0);
    padded.insert(padded.end(), length.begin(), length.end());

    Matrix state{};
    for (std::size_t at = 0; at < padded.size(); at += 64)
        WhirlpoolCompress(state, std::span<const std::uint8_t, 64>(padded.data() + at, 64));
    std::vector<std::uint8_t> digest;
    for (const auto& row : state)
        digest.insert(digest.end(), row.begin(), row.end());
    return digest;
}

std::vector<std::uint8_t> Whirlpool(std::span<const std::uint8_t> message) {
    std::array<std::uint8_t, 32> length{};
    std::uint64_t bits = 8 * message.size();
    for (std::size_t i = 32; bits != 0; bits >>= 8)
        length[--i] = static_cast<std::uint8_t>(bits);
    return WhirlpoolOfBits(message, 8 * message.size(), length);
}

} // namespace reference
