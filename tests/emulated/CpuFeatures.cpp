// SPDX-License-Identifier: MIT
// The features of the emulated processor, in place of those that the library finds. Kernels that are not emulated,
// but for the portable ones, need others and are not run.
#include "hash/kernels/CpuFeatures.h"

namespace fyrn::kernels {

CpuFeatures AvailableCpuFeatures() {
    return cpu::pclmul | cpu::avx512 | cpu::avx512vbmi | cpu::gfni | cpu::vpclmul;
}

CpuMaker ProcessorMaker() {
    return CpuMaker::other;
}

} // namespace fyrn::kernels
