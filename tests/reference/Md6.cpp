// SPDX-License-Identifier: MIT
#include "tests/reference/Md6.h"

#include <algorithm>
#include <array>

namespace reference {
namespace {

using Words = std::vector<std::uint64_t>;

constexpr int levels = 64; // the mode parameter L: more than a message can need

// One level of the tree as a string of bits, which need not fill its last word.
struct Level {
    Words words;
    std::uint64_t bits;
};

// Bit `index` behind the point of a binary fraction.
std::uint64_t FractionBit(std::size_t index) {
    return std::uint64_t{1} << (63 - index % 64);
}

// Whether the square of 2 + fraction is at most 6: the whole product, digit by digit of 32 bits.
bool SquareIsAtMostSix(const Words& fraction) {
    std::vector<std::uint64_t> digits = {2};
    for (const std::uint64_t word : fraction) {
        digits.push_back(word >> 32);
        digits.push_back(word & 0xffffffff);
    }
    std::vector<std::uint64_t> product(2 * digits.size(), 0);
    for (std::size_t i = digits.size(); i-- > 0;) {
        std::uint64_t carry = 0;
        for (std::size_t j = digits.size(); j-- > 0;) {
            const std::uint64_t sum = product[i + j + 1] + digits[i] * digits[j] + carry;
            product[i + j + 1] = sum & 0xffffffff;
            carry = sum >> 32;
        }
        product[i] += carry;
    }
    return product[1] < 6;
}

struct Tree {
    Md6Parameters parameters;
    int rounds;
    Words key;
};

// One node.
Words CompressNode(const Tree& tree, int level, std::uint64_t index, bool root, std::uint64_t padding,
                   const Words& block) {
    const auto field = [](auto value, int shift) { return static_cast<std::uint64_t>(value) << shift; };
    Words input = Md6Q();
    input.insert(input.end(), tree.key.begin(), tree.key.end());
    input.push_back(field(level, 56) + index);
    input.push_back(field(tree.rounds, 48) + field(levels, 40) + field(root, 36) + field(padding, 20) +
                    field(tree.parameters.key.size(), 12) + field(tree.parameters.digestBits, 0));
    input.insert(input.end(), block.begin(), block.end());
    return Md6Compress(input, tree.rounds);
}

// PAR: all nodes of a level at once.
Level Parallel(const Tree& tree, const Level& data, int level) {
    const std::uint64_t nodes = std::max<std::uint64_t>(1, (data.bits + 4095) / 4096);
    Words padded = data.words;
    padded.resize(static_cast<std::size_t>(nodes * 64), 0);
    Level result{{}, nodes * 1024};
    for (std::uint64_t i = 0; i < nodes; ++i) {
        const Words block(padded.begin() + static_cast<std::ptrdiff_t>(64 * i),
                          padded.begin() + static_cast<std::ptrdiff_t>(64 * i + 64));
        const std::uint64_t padding = i + 1 == nodes ? nodes * 4096 - data.bits : 0;
        const Words value = CompressNode(tree, level, i, nodes == 1, padding, block);
        result.words.insert(result.words.end(), value.begin(), value.end());
    }
    return result;
}

Words HashLevels(const Tree& tree, const Level& data, int level) {
    const Level next = Parallel(tree, data, level);
    return next.bits == 1024 ? next.words : HashLevels(tree, next, level + 1);
}

Words WordsOfBits(const std::vector<std::uint8_t>& bytes, std::uint64_t bits) {
    Words words(static_cast<std::size_t>((bits + 63) / 64), 0);
    for (std::size_t i = 0; i < bits; ++i)
        if (bytes[i / 8] >> (7 - i % 8) & 1)
            words[i / 64] |= std::uint64_t{1} << (63 - i % 64);
    return words;
}

// The last bits of the root's value, the first of them at the top of the first byte.
std::vector<std::uint8_t> LastBits(const Words& value, int digestBits) {
    std::vector<std::uint8_t> digest(static_cast<std::size_t>(digestBits + 7) / 8, 0);
    for (int i = 0; i < digestBits; ++i) {
        const int from = 1024 - digestBits + i;
        if (value[static_cast<std::size_t>(from / 64)] >> (63 - from % 64) & 1)
            digest[static_cast<std::size_t>(i / 8)] |= static_cast<std::uint8_t>(0x80 >> i % 8);
    }
    return digest;
}

} // namespace

Words Md6Q() {
    static const Words q = [] {
        Words fraction(15, 0);
        for (std::size_t bit = 0; bit < 960; ++bit) {
            fraction[bit / 64] |= FractionBit(bit);
            if (!SquareIsAtMostSix(fraction))
                fraction[bit / 64] ^= FractionBit(bit);
        }
        return fraction;
    }();
    return q;
}

Words Md6Compress(const Words& input, int rounds) {
    static constexpr std::array<int, 16> right = {10, 5, 13, 10, 11, 12, 2, 7, 14, 15, 7, 13, 11, 7, 6, 12};
    static constexpr std::array<int, 16> left = {11, 24, 9, 16, 15, 9, 27, 15, 6, 2, 29, 8, 15, 5, 31, 9};
    Words a = input;
    a.reserve(input.size() + 16 * static_cast<std::size_t>(rounds));
    std::uint64_t constant = 0x0123456789abcdef;
    for (std::size_t i = 89; i < 89 + 16 * static_cast<std::size_t>(rounds); ++i) {
        const std::size_t step = (i - 89) % 16;
        if (step == 0 && i != 89)
            constant = (constant << 1) ^ (constant >> 63) ^ (constant & 0x7311c2812425cfa0);
        std::uint64_t x = constant ^ a[i - 89] ^ a[i - 17];
        x ^= (a[i - 18] & a[i - 21]) ^ (a[i - 31] & a[i - 67]);
        x ^= x >> right[step];
        a.push_back(x ^ (x << left[step]));
    }
    return Words(a.end() - 16, a.end());
}

std::vector<std::uint8_t> Md6(const std::vector<std::uint8_t>& message, std::uint64_t bitCount,
                              const Md6Parameters& parameters) {
    Tree tree{parameters, parameters.rounds, Words(8, 0)};
    const std::vector<std::uint8_t>& key = parameters.key;
    if (tree.rounds < 0)
        tree.rounds = std::max(key.empty() ? 0 : 80, 40 + parameters.digestBits / 4);
    for (std::size_t i = 0; i < key.size(); ++i)
        tree.key[i / 8] |= static_cast<std::uint64_t>(key[i]) << (56 - 8 * (i % 8));
    const Level data{WordsOfBits(message, bitCount), bitCount};
    return LastBits(HashLevels(tree, data, 1), parameters.digestBits);
}

} // namespace reference
