// SPDX-License-Identifier: MIT
// RIPEMD-160 as its authors' paper of 1996 describes it, one line after the other.
#pragma once

#include "tests/helpers/Bytes.h"

#include <array>
#include <cstdint>
#include <span>

namespace reference {

using Ripemd160State = std::array<std::uint32_t, 5>;

void Ripemd160Compress(Ripemd160State& state, const std::uint8_t* block);

helpers::Bytes Ripemd160(std::span<const std::uint8_t> message);

} // namespace reference
