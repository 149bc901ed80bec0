// SPDX-License-Identifier: MIT
#include "hash/kernels/Sm3.h"
#include "hash/kernels/Sm3_Rounds.h"

namespace fyrn::kernels {

void Sm3_Blocks_Portable(std::uint32_t state[8], const std::uint8_t* blocks, std::size_t count) {
    sm3::Compress(state, blocks, count);
}

} // namespace fyrn::kernels
