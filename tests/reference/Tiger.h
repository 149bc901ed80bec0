// SPDX-License-Identifier: MIT
// Tiger, written from the paper of its authors (Anderson, Biham, "Tiger: a fast new hash function", 1996),
// with the S-boxes made by the program that they published with it.
#pragma once

#include "tests/helpers/Bytes.h"

#include <array>
#include <cstdint>
#include <span>

namespace reference {

using TigerState = std::array<std::uint64_t, 3>;

inline constexpr TigerState tigerInitialState = {0x0123456789abcdef, 0xfedcba9876543210, 0xf096a5b4c3b2e187};
inline constexpr std::uint8_t tiger1Padding = 0x01;
inline constexpr std::uint8_t tiger2Padding = 0x80;

// An entry of the S-boxes: box 0 to 3, index 0 to 255.
std::uint64_t TigerSBox(std::size_t box, std::size_t index);

void TigerCompress(TigerState& state, const std::uint8_t* block);

// The 24 bytes of the digest. `countedBytes` is what the length field encodes: the message's size, in the
// standard.
helpers::Bytes Tiger(std::span<const std::uint8_t> message, std::uint8_t padding, std::uint64_t countedBytes);

} // namespace reference
