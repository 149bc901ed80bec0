// SPDX-License-Identifier: MIT
// SM3 as GB/T 32905-2016 describes it, step by step.
#pragma once

#include "tests/helpers/Bytes.h"

#include <array>
#include <cstdint>
#include <span>

namespace reference {

using Sm3State = std::array<std::uint32_t, 8>;

void Sm3Compress(Sm3State& state, const std::uint8_t* block);

helpers::Bytes Sm3(std::span<const std::uint8_t> message);

} // namespace reference
