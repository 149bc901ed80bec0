// SPDX-License-Identifier: MIT
// BLAKE3 as its authors' paper describes it (2020, section 2): node by node, from the definition of the tree.
#pragma once

#include "tests/helpers/Bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace reference {

using Blake3Value = std::array<std::uint32_t, 8>;

// The 16 words that the compression function gives for a block of up to 64 bytes.
std::array<std::uint32_t, 16> Blake3Compress(const Blake3Value& value, std::span<const std::uint8_t> block,
                                             std::uint64_t counter, std::uint32_t flags);

// The values of a chunk of 1,024 bytes and of a parent of 64 bytes, neither of which is the root.
Blake3Value Blake3Chunk(std::span<const std::uint8_t> chunk, std::uint64_t counter);
Blake3Value Blake3Parent(std::span<const std::uint8_t> children);

helpers::Bytes Blake3(std::span<const std::uint8_t> message, std::size_t digestSize);

} // namespace reference
