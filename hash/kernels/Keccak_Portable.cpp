// SPDX-License-Identifier: MIT
// The permutation of Keccak_Permute.h for every processor.
#include "hash/kernels/Keccak.h"
#include "hash/kernels/Keccak_Permute.h"

namespace fyrn::kernels {

void Keccak_Blocks_Portable(std::uint64_t state[25], const std::uint8_t* blocks, std::size_t lanes,
                            std::size_t count) {
    for (; count != 0; --count, blocks += 8 * lanes)
        KeccakAbsorb(state, blocks, lanes);
}

} // namespace fyrn::kernels
