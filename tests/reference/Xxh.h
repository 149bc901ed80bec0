// SPDX-License-Identifier: MIT
// XXH32, XXH64 and XXH3 with the seed 0, written from the description of the algorithm (xxHash fast digest algorithm,
// version 0.8) a word at a time.
#pragma once

#include "tests/helpers/Bytes.h"

#include <cstdint>
#include <span>

namespace reference {

helpers::Bytes Xxh32(std::span<const std::uint8_t> message);
helpers::Bytes Xxh64(std::span<const std::uint8_t> message);
helpers::Bytes Xxh3(std::span<const std::uint8_t> message);
helpers::Bytes Xxh128(std::span<const std::uint8_t> message);

} // namespace reference
