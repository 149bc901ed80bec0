// SPDX-License-Identifier: MIT
// RIPEMD-160 compression (Dobbertin, Bosselaers, Preneel, "RIPEMD-160, a strengthened version of RIPEMD", 1996).
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// Compresses `count` blocks of 64 bytes into the state h0..h4.
using Ripemd160Blocks = void(std::uint32_t state[5], const std::uint8_t* blocks, std::size_t count);

Ripemd160Blocks Ripemd160_Blocks_Portable;

} // namespace fyrn::kernels
