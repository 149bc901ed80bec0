// SPDX-License-Identifier: MIT
// MD6 compression of tree nodes (Rivest et al., "The MD6 hash function", 2008), word size 64.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

inline constexpr std::size_t md6NodeSize = 512;          // bytes that a node takes
inline constexpr std::size_t md6ChainingValueSize = 128; // bytes that a node gives
inline constexpr std::size_t md6InputWords = 89;         // the words that the rounds start from
inline constexpr std::size_t md6PrefixWords = 23; // those that all nodes share: Q (15) and the key K (8)

// What the nodes of one batch have in common. They are neighbours on one level of the tree.
struct Md6Batch {
    const std::uint64_t* prefix; // Q and K
    std::uint64_t firstId;       // the word U of the first node; every further node has one more
    std::uint64_t control;       // the word V of all nodes but the last
    std::uint64_t lastControl;   // the word V of the last one, the only one that may be padded or the root
    int rounds;                  // of 16 steps each, any number
};

// Compresses `count` nodes, which do not depend on each other, from `nodes` to `chainingValues`. Both are
// the byte strings of the standard: words most significant byte first.
using Md6Nodes = void(std::uint8_t* chainingValues, const std::uint8_t* nodes, std::size_t count,
                      const Md6Batch& batch);

Md6Nodes Md6_Nodes_Portable;
Md6Nodes Md6_Nodes_X86Avx2;   // four nodes at a time
Md6Nodes Md6_Nodes_X86Avx512; // eight

} // namespace fyrn::kernels
