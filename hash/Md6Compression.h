// SPDX-License-Identifier: MIT
// MD6's compression function on words, and the two words in which the nodes of a tree differ besides their data.
#pragma once

#include <cstdint>

namespace fyrn::hash {

// The word U: which node of the tree it is.
constexpr std::uint64_t Md6NodeId(int level, std::uint64_t index) {
    return (static_cast<std::uint64_t>(level) << 56) + index;
}

// The word V: the parameters of the hash and of the node.
struct Md6Control {
    int rounds;
    int mode; // L, the last level that is part of the tree
    bool isRoot;
    std::uint32_t padding; // bits
    unsigned int keySize;  // bytes
    unsigned int digestBits;

    constexpr std::uint64_t Word() const {
        return static_cast<std::uint64_t>(rounds) << 48 | static_cast<std::uint64_t>(mode) << 40 |
               std::uint64_t{isRoot} << 36 | std::uint64_t{padding} << 20 | std::uint64_t{keySize} << 12 |
               digestBits;
    }
};

// Compresses 89 words, Q, the key, U, V and the 64 words of a node, to 16 words.
void Md6Compress(std::uint64_t* value, const std::uint64_t* input, int rounds);

} // namespace fyrn::hash
