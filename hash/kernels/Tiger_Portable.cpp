// SPDX-License-Identifier: MIT
// Tiger in plain C++.
#include "hash/kernels/Tiger_Round.h"

namespace fyrn::kernels {

void Tiger_Blocks_Portable(std::uint64_t state[3], const std::uint8_t* blocks, std::size_t count) {
    tiger::CompressBlocks(tiger::ShiftedBytes{}, state, blocks, count);
}

} // namespace fyrn::kernels
