// SPDX-License-Identifier: MIT
// How 64-bit x86 processors and their systems say what they support.
#pragma once

#include "hash/kernels/CpuFeatures.h"

#include <cstdint>

namespace fyrn::kernels {

// What the instructions CPUID and XGETBV answer. A leaf that the processor does not have is 0.
struct CpuidWords {
    std::uint32_t leaf1Ecx = 0;
    std::uint32_t leaf7Ebx = 0;
    std::uint32_t leaf7Ecx = 0;
    std::uint32_t xcr0 =
        0; // the registers that the system keeps; looked at only where leaf 1 says that it may be
};

// The features that stand in the words. One that consists of several, or that needs registers which the system must
// keep, is there only with all of them.
CpuFeatures FeaturesOf(const CpuidWords& words);

} // namespace fyrn::kernels
