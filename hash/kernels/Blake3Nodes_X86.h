// SPDX-License-Identifier: MIT
// Nodes of BLAKE3's tree side by side, one in each lane. They all do the same, since a level's nodes are equally long.
//
// Lanes_X86Avx2.h or Lanes_X86Avx512.h is included ahead of this.
#pragma once

#include "hash/kernels/Blake3.h"
#include "hash/kernels/Blake3_Rounds.h"

#include <algorithm>
#include <cstring>

namespace fyrn::kernels {
namespace {

ISA_LANES ALWAYS_INLINE Words32 LoadWords(const std::uint32_t words[Words32::lanes]) {
    Words32 loaded;
    std::memcpy(&loaded.all, words, sizeof loaded.all);
    return loaded;
}

// Compresses the node of each lane.
ISA_LANES ALWAYS_INLINE void CompressNodes(std::uint32_t* const values[], const std::uint8_t* const nodes[],
                                           Blake3Level level, const std::uint64_t counters[Words32::lanes]) {
    std::uint32_t low[Words32::lanes];
    std::uint32_t high[Words32::lanes];
    for (std::size_t i = 0; i < Words32::lanes; ++i) {
        low[i] = static_cast<std::uint32_t>(counters[i]);
        high[i] = static_cast<std::uint32_t>(counters[i] >> 32);
    }
    const std::size_t blocks = BlocksOfNode(level);
    Words32 h[8];
    for (int i = 0; i < 8; ++i)
        h[i] = Broadcast(blake3InitialValues[i]);
    for (std::size_t block = 0; block < blocks; ++block) {
        Words32 m[16];
        LoadLine(nodes, block * blake3BlockSize, m);
        Words32 v[16] = {h[0],
                         h[1],
                         h[2],
                         h[3],
                         h[4],
                         h[5],
                         h[6],
                         h[7],
                         Broadcast(blake3InitialValues[0]),
                         Broadcast(blake3InitialValues[1]),
                         Broadcast(blake3InitialValues[2]),
                         Broadcast(blake3InitialValues[3]),
                         LoadWords(low),
                         LoadWords(high),
                         Broadcast(std::uint32_t{blake3BlockSize}),
                         Broadcast(FlagsOfBlock(level, block, blocks))};
        SevenRounds(v, m);
        for (int i = 0; i < 8; ++i)
            h[i] = v[i] ^ v[i + 8];
    }
    StoreFour(values, 0, h[0], h[1], h[2], h[3]);
    StoreFour(values, 16, h[4], h[5], h[6], h[7]);
}

// All nodes, in groups; a lane without a node repeats the group's last.
ISA_LANES ALWAYS_INLINE void CompressLevel(std::uint8_t* values, const std::uint8_t* nodes, std::size_t count,
                                           Blake3Level level, std::uint64_t counter) {
    constexpr std::size_t lanes = Words32::lanes;
    const std::size_t nodeSize = BlocksOfNode(level) * blake3BlockSize;
    while (count != 0) {
        const std::size_t group = std::min(count, lanes);
        const std::uint8_t* nodeOf[lanes];
        std::uint32_t* valueOf[lanes];
        std::uint64_t counterOf[lanes];
        for (std::size_t i = 0; i < lanes; ++i) {
            const std::size_t node = std::min(i, group - 1);
            nodeOf[i] = nodes + node * nodeSize;
            valueOf[i] = reinterpret_cast<std::uint32_t*>(values + node * blake3ValueSize);
            counterOf[i] = level == Blake3Level::chunks ? counter + node : 0;
        }
        CompressNodes(valueOf, nodeOf, level, counterOf);
        values += group * blake3ValueSize;
        nodes += group * nodeSize;
        counter += group;
        count -= group;
    }
}

} // namespace
} // namespace fyrn::kernels
