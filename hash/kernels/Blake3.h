// SPDX-License-Identifier: MIT
// BLAKE3's compression function and its nodes (O'Connor, Aumasson, Neves, Wilcox-O'Hearn, "BLAKE3", 2020), without a key.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

inline constexpr std::size_t blake3BlockSize = 64;   // bytes
inline constexpr std::size_t blake3ChunkSize = 1024; // bytes of the message in a leaf of the tree
inline constexpr std::size_t blake3ValueSize = 32;   // bytes that a node gives

// The chaining value that every node begins with: the initial values of SHA-256.
inline constexpr std::uint32_t blake3InitialValues[8] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                                         0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};

// The domain flags of a block.
namespace blake3_flag {
inline constexpr std::uint32_t chunkStart = 1, chunkEnd = 2, parent = 4, root = 8;
} // namespace blake3_flag

// Compresses one block of 64 bytes, of which `size` belong to the message, with a chaining value of 8 words. The first 8
// words of `out` are the next chaining value. `out` may begin where `value` does.
using Blake3Compress = void(std::uint32_t out[16], const std::uint32_t value[8], const std::uint8_t* block,
                            std::uint32_t size, std::uint64_t counter, std::uint32_t flags);

// Neighbours on one level of the tree.
enum class Blake3Level { chunks, parents };

// Compresses `count` nodes that lie behind one another, from `nodes` to their values of 32 bytes each: whole chunks of
// 1,024 bytes, the first of which has the number `counter`, or pairs of values of 32 bytes, whose number does not count.
using Blake3Nodes = void(std::uint8_t* values, const std::uint8_t* nodes, std::size_t count,
                         Blake3Level level, std::uint64_t counter);

Blake3Compress Blake3_Compress_Portable;

Blake3Nodes Blake3_Nodes_Portable;
Blake3Nodes Blake3_Nodes_X86Avx2;   // eight at a time
Blake3Nodes Blake3_Nodes_X86Avx512; // sixteen

} // namespace fyrn::kernels
