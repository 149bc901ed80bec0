// SPDX-License-Identifier: MIT
// Tiger compression (Anderson, Biham, "Tiger: a fast new hash function", 1996), three passes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Compresses `count` blocks of 64 bytes into the state a, b, c.
using TigerBlocks = void(std::uint64_t state[3], const std::uint8_t* blocks, std::size_t count);

TigerBlocks Tiger_Blocks_Portable;
TigerBlocks Tiger_Blocks_X86Bmi;

// Compresses `count` blocks of each of many messages, each into a state of its own.
using TigerLanes = void(std::uint64_t* const states[], const std::uint8_t* const blocks[], std::size_t count);

TigerLanes Tiger_Lanes_Portablex3;
TigerLanes Tiger_Lanes_Portablex2;

// The four S-boxes, each indexed by a byte.
struct alignas(64) TigerBoxes {
    std::uint64_t box[4][256];
};

// Computed at the first call, in well under a millisecond.
const TigerBoxes& TigerSBoxes();

} // namespace fyrn::kernels
