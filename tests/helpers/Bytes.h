// SPDX-License-Identifier: MIT
// Bytes for tests: reproducible messages, and hex text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace helpers {

using Bytes = std::vector<std::uint8_t>;

// Bytes that look random and depend on the seed alone; a shorter message is a prefix of a longer one.
Bytes PseudoRandomBytes(std::size_t count, std::uint64_t seed);

Bytes BytesOf(std::string_view text);

std::string ToHex(std::span<const std::uint8_t> bytes);

// Throws std::invalid_argument for text that is not pairs of hex digits.
Bytes FromHex(std::string_view text);

} // namespace helpers
