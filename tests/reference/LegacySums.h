// SPDX-License-Identifier: MIT
// The sums of cksum (POSIX.1-2017, "cksum") and of sum, BSD and System V, bit by bit and byte by byte.
#pragma once

#include <cstdint>
#include <span>

namespace reference {

std::uint32_t Cksum(std::span<const std::uint8_t> message);
std::uint16_t BsdSum(std::span<const std::uint8_t> message);
std::uint16_t SysvSum(std::span<const std::uint8_t> message);

} // namespace reference
