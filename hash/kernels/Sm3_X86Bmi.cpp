// SPDX-License-Identifier: MIT
// The plain kernel, whose every rotation into another register is one instruction here.
#include "hash/kernels/Sm3.h"
#include "hash/kernels/Sm3_Rounds.h"

namespace fyrn::kernels {

ISA_BMI void Sm3_Blocks_X86Bmi(std::uint32_t state[8], const std::uint8_t* blocks, std::size_t count) {
    sm3::Compress(state, blocks, count);
}

} // namespace fyrn::kernels
