// SPDX-License-Identifier: MIT
// Whirlpool (final version) as its authors write it down: bytes in an 8 by 8 matrix, the S-box computed from
// its mini-boxes and the diffusion as a product of matrices. Messages may end within a byte. Slow, for
// comparison only.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace reference {

using WhirlpoolMatrix = std::array<std::array<std::uint8_t, 8>, 8>;

std::uint8_t WhirlpoolSBox(std::uint8_t value);

// One compression (Miyaguchi-Preneel) of a block into the state.
void WhirlpoolCompress(WhirlpoolMatrix& state, std::span<const std::uint8_t, 64> block);

// The digest of the first `bits` bits of a message, first bit highest. `length` is the 256-bit number that
// the padding ends in, most significant byte first.
std::vector<std::uint8_t> WhirlpoolOfBits(std::span<const std::uint8_t> message, std::size_t bits,
                                          const std::array<std::uint8_t, 32>& length);

// The digest of a message of whole bytes.
std::vector<std::uint8_t> Whirlpool(std::span<const std::uint8_t> message);

} // namespace reference
