// SPDX-License-Identifier: MIT
// The message layout that MD4 and MD5 have in common, as RFC 1320 and RFC 1321 describe it in their steps 1, 2 and 5.
#pragma once

#include "tests/helpers/Bytes.h"

#include <array>
#include <cstdint>
#include <span>

namespace reference {

using State32x4 = std::array<std::uint32_t, 4>;

// The message with a one bit, zero bits and the length in bits appended, a multiple of 64 bytes. The length is that of
// `statedBytes` bytes.
helpers::Bytes PadLittleEndian(std::span<const std::uint8_t> message, std::uint64_t statedBytes);

// Word i of a block, low-order byte first.
std::uint32_t LittleEndianWord(const std::uint8_t* block, unsigned int i);

// The words A, B, C, D, low-order byte first.
helpers::Bytes LittleEndianDigest(const State32x4& state);

} // namespace reference
