// SPDX-License-Identifier: MIT
#include "tests/reference/Blake3.h"

#include <algorithm>

namespace reference {
namespace {

using Word = std::uint32_t;
using Block = std::span<const std::uint8_t>;

constexpr Blake3Value initialValue = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                      0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
constexpr Word chunkStart = 1, chunkEnd = 2, parent = 4, root = 8;
constexpr std::size_t chunkSize = 1024, blockSize = 64;

Word RotateRight(Word word, int by) {
    return word >> by | word << (32 - by);
}

void G(Word& a, Word& b, Word& c, Word& d, Word x, Word y) {
    a = a + b + x;
    d = RotateRight(d ^ a, 16);
    c = c + d;
    b = RotateRight(b ^ c, 12);
    a = a + b + y;
    d = RotateRight(d ^ a, 8);
    c = c + d;
    b = RotateRight(b ^ c, 7);
}

// What is left to do for a node: its last block, which is compressed once more for every block of the root's output.
struct Output {
    Blake3Value value;
    helpers::Bytes block;
    std::uint64_t counter;
    Word flags;

    Blake3Value Value() const {
        const auto words = Blake3Compress(value, block, counter, flags);
        Blake3Value result;
        std::copy_n(words.begin(), 8, result.begin());
        return result;
    }
};

Output ChunkOutput(Block chunk, std::uint64_t counter) {
    Blake3Value value = initialValue;
    Word flags = chunkStart;
    for (; chunk.size() > blockSize; chunk = chunk.subspan(blockSize)) {
        value = Output{value, {chunk.begin(), chunk.begin() + blockSize}, counter, flags}.Value();
        flags = 0;
    }
    return {value, {chunk.begin(), chunk.end()}, counter, flags | chunkEnd};
}

Output ParentOutput(const Blake3Value& left, const Blake3Value& right) {
    helpers::Bytes block;
    for (const Blake3Value& child : {left, right})
        for (const Word word : child)
            for (int shift = 0; shift < 32; shift += 8)
                block.push_back(static_cast<std::uint8_t>(word >> shift));
    return {initialValue, block, 0, parent};
}

// The left subtree is the largest that is complete and leaves at least one byte to the right one.
Output TreeOutput(Block message, std::uint64_t firstChunk) {
    if (message.size() <= chunkSize)
        return ChunkOutput(message, firstChunk);
    std::size_t left = chunkSize;
    while (2 * left < message.size())
        left *= 2;
    return ParentOutput(TreeOutput(message.first(left), firstChunk).Value(),
                        TreeOutput(message.subspan(left), firstChunk + left / chunkSize).Value());
}

} // namespace

std::array<Word, 16> Blake3Compress(const Blake3Value& value, Block block, std::uint64_t counter,
                                    Word flags) {
    constexpr std::size_t permutation[16] = {2, 6, 3, 10, 7, 0, 4, 13, 1, 11, 12, 5, 9, 14, 15, 8};
    std::array<Word, 16> m{};
    for (std::size_t i = 0; i < block.size(); ++i)
        m[i / 4] |= Word{block[i]} << 8 * (i % 4);
    std::array<Word, 16> v;
    std::copy_n(value.begin(), 8, v.begin());
    std::copy_n(initialValue.begin(), 4, v.begin() + 8);
    v[12] = static_cast<Word>(counter);
    v[13] = static_cast<Word>(counter >> 32);
    v[14] = static_cast<Word>(block.size());
    v[15] = flags;
    for (int round = 0; round < 7; ++round) {
        for (std::size_t i = 0; i < 4; ++i)
            G(v[i], v[4 + i], v[8 + i], v[12 + i], m[2 * i], m[2 * i + 1]);
        for (std::size_t i = 0; i < 4; ++i)
            G(v[i], v[4 + (i + 1) % 4], v[8 + (i + 2) % 4], v[12 + (i + 3) % 4], m[8 + 2 * i], m[9 + 2 * i]);
        const std::array<Word, 16> old = m;
        for (std::size_t i = 0; i < 16; ++i)
            m[i] = old[permutation[i]];
    }
    for (std::size_t i = 0; i < 8; ++i) {
        v[i] ^= v[i + 8];
        v[i + 8] ^= value[i];
    }
    return v;
}

Blake3Value Blake3Chunk(Block chunk, std::uint64_t counter) {
    return ChunkOutput(chunk, counter).Value();
}

Blake3Value Blake3Parent(Block children) {
    return Output{initialValue, {children.begin(), children.end()}, 0, parent}.Value();
}

helpers::Bytes Blake3(Block message, std::size_t digestSize) {
    Output output = TreeOutput(message, 0);
    helpers::Bytes digest;
    for (output.counter = 0; digest.size() < digestSize; ++output.counter)
        for (const Word word :
             Blake3Compress(output.value, output.block, output.counter, output.flags | root))
            for (int shift = 0; shift < 32 && digest.size() < digestSize; shift += 8)
                digest.push_back(static_cast<std::uint8_t>(word >> shift));
    return digest;
}

} // namespace reference
