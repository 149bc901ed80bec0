// SPDX-License-Identifier: MIT
// Keccak-f[1600] and its sponge as FIPS 202 describes them, step by step.
#pragma once

#include "tests/helpers/Bytes.h"

#include <array>
#include <cstdint>
#include <span>

namespace reference {

// Lane (x, y) is word x + 5y (section 3.1.2).
using KeccakState = std::array<std::uint64_t, 25>;

// Section 3.3 with 24 rounds.
void KeccakPermute(KeccakState& state);

// Adds `lanes` little-endian words to the first lanes of the state and permutes it.
void KeccakAbsorb(KeccakState& state, const std::uint8_t* block, std::size_t lanes);

// Algorithm 8, with whole bytes: the sponge of `rate` bytes over the message and a padding that starts with
// the bits of `suffix` (0x06 for SHA-3, 0x1f for SHAKE, 0x01 for Keccak as it was submitted) and ends with
// a one bit.
helpers::Bytes Sponge(std::size_t rate, std::uint8_t suffix, std::span<const std::uint8_t> message,
                      std::size_t length);

} // namespace reference
