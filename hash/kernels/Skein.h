// SPDX-License-Identifier: MIT
// Skein's chaining of blocks (Skein 1.3): Threefish of 256, 512 and 1024 bits in UBI mode.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Absorbs `count` blocks of 32, 64 or 128 bytes into the chaining value of 4, 8 or 16 words, adding `added`
// to the position in tweak word 0 ahead of each block. The first flag of tweak word 1 is cleared after it.
using SkeinBlocks = void(std::uint64_t* chain, std::uint64_t tweak[2], const std::uint8_t* blocks,
                         std::size_t count, std::uint64_t added);

SkeinBlocks Skein256_Blocks_Portable;
SkeinBlocks Skein512_Blocks_Portable;
SkeinBlocks Skein1024_Blocks_Portable;
SkeinBlocks Skein1024_Blocks_X86Avx2;
SkeinBlocks Skein1024_Blocks_X86Avx512;

// The same for many messages, each with a chaining value and a tweak of its own.
using SkeinLanes = void(std::uint64_t* const chains[], std::uint64_t* const tweaks[],
                        const std::uint8_t* const blocks[], std::size_t count, std::uint64_t added);

SkeinLanes Skein256_Lanes_X86Avx512x8;
SkeinLanes Skein256_Lanes_X86Avx2x4;
SkeinLanes Skein512_Lanes_X86Avx512x8;
SkeinLanes Skein512_Lanes_X86Avx2x4;
SkeinLanes Skein1024_Lanes_X86Avx512x8;
SkeinLanes Skein1024_Lanes_X86Avx2x4;

// The flags and types of tweak word 1.
namespace skein_tweak {
inline constexpr std::uint64_t first = std::uint64_t{1} << 62;
inline constexpr std::uint64_t final = std::uint64_t{1} << 63;
inline constexpr std::uint64_t configuration = std::uint64_t{4} << 56;
inline constexpr std::uint64_t message = std::uint64_t{48} << 56;
inline constexpr std::uint64_t output = std::uint64_t{63} << 56;
} // namespace skein_tweak

} // namespace fyrn::kernels
