// SPDX-License-Identifier: MIT
// BLAKE2b compression (RFC 7693).
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// The initial values of RFC 7693: those of SHA-512.
inline constexpr std::uint64_t blake2bInitialValues[8] = {
    0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b, 0xa54ff53a5f1d36f1,
    0x510e527fade682d1, 0x9b05688c2b3e6c1f, 0x1f83d9abfb41bd6b, 0x5be0cd19137e2179,
};

struct Blake2bState {
    std::uint64_t chain[8];
    std::uint64_t counter[2]; // bytes compressed so far, low word first
    std::uint64_t flags[2];   // all ones in the last block and the last node

    bool operator==(const Blake2bState&) const = default;
};

// Compresses `count` blocks of 128 bytes into the state, adding
// `added` bytes to the counter ahead of each.
using Blake2bCompress = void(Blake2bState& state, const std::uint8_t* blocks, std::size_t count,
                             std::uint64_t added);

Blake2bCompress Blake2b_Compress_Portable;
Blake2bCompress Blake2b_Compress_X86Avx2;
Blake2bCompress Blake2b_Compress_X86Avx512;

// Compresses `count` blocks of each of many messages, each into a state of its own, adding
// `added` bytes to each counter ahead of each block.
using Blake2bLanes = void(Blake2bState* const states[], const std::uint8_t* const blocks[], std::size_t count,
                          std::uint64_t added);

Blake2bLanes Blake2b_Lanes_X86Avx512x8;
Blake2bLanes Blake2b_Lanes_X86Avx2x4;

} // namespace fyrn::kernels
