// SPDX-License-Identifier: MIT
#include "hash/kernels/Blake3.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Isa.h"

#include <algorithm>
#include <bit>
#include <iterator>

#define ISA_LANES

namespace fyrn::kernels {
namespace {

template <int count>
ALWAYS_INLINE std::uint32_t RotateRight(std::uint32_t x) {
    return std::rotr(x, count);
}

} // namespace
} // namespace fyrn::kernels

#include "hash/kernels/Blake3_Rounds.h"

namespace fyrn::kernels {

void Blake3_Compress_Portable(std::uint32_t out[16], const std::uint32_t value[8], const std::uint8_t* block,
                              std::uint32_t size, std::uint64_t counter, std::uint32_t flags) {
    std::uint32_t m[16];
    for (int i = 0; i < 16; ++i)
        m[i] = LoadLittle<std::uint32_t>(block + 4 * i);
    std::uint32_t v[16] = {value[0],
                           value[1],
                           value[2],
                           value[3],
                           value[4],
                           value[5],
                           value[6],
                           value[7],
                           blake3InitialValues[0],
                           blake3InitialValues[1],
                           blake3InitialValues[2],
                           blake3InitialValues[3],
                           static_cast<std::uint32_t>(counter),
                           static_cast<std::uint32_t>(counter >> 32),
                           size,
                           flags};
    SevenRounds(v, m);
    for (int i = 0; i < 8; ++i) {
        const std::uint32_t old = value[i];
        out[i] = v[i] ^ v[i + 8];
        out[i + 8] = v[i + 8] ^ old;
    }
}

void Blake3_Nodes_Portable(std::uint8_t* values, const std::uint8_t* nodes, std::size_t count,
                           Blake3Level level, std::uint64_t counter) {
    const std::size_t blocks = BlocksOfNode(level);
    const std::uint64_t step = level == Blake3Level::chunks ? 1 : 0;
    counter *= step;
    for (; count != 0; --count, values += blake3ValueSize) {
        std::uint32_t words[16];
        std::copy(std::begin(blake3InitialValues), std::end(blake3InitialValues), words);
        for (std::size_t block = 0; block < blocks; ++block, nodes += blake3BlockSize)
            Blake3_Compress_Portable(words, words, nodes, blake3BlockSize, counter,
                                     FlagsOfBlock(level, block, blocks));
        for (int i = 0; i < 8; ++i)
            StoreLittle(values + 4 * i, words[i]);
        counter += step;
    }
}

} // namespace fyrn::kernels
