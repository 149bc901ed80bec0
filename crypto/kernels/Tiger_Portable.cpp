// SPDX-License-Identifier: MIT
// Tiger in plain C++.
#include "crypto/kernels/Tiger_Round.h"

namespace kernels {

void Tiger_Blocks_Portable(std::uint64_t state[3], const std::uint8_t* blocks, std::size_t count) {
    tiger::CompressBlocks(tiger::ShiftedBytes{}, state, blocks, count);
}

} // namespace kernels
