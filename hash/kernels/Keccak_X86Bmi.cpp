// SPDX-License-Identifier: MIT
// The plain kernel, whose every "and not" and rotation is one instruction here.
#include "hash/kernels/Keccak.h"
#include "hash/kernels/Keccak_Permute.h"

namespace fyrn::kernels {

ISA_BMI void Keccak_Blocks_X86Bmi(std::uint64_t state[25], const std::uint8_t* blocks, std::size_t lanes,
                                  std::size_t count) {
    for (; count != 0; --count, blocks += 8 * lanes)
        KeccakAbsorb(state, blocks, lanes);
}

} // namespace fyrn::kernels
