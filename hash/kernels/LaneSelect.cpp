// SPDX-License-Identifier: MIT
#include "hash/kernels/LaneSelect.h"

#include "hash/kernels/Isa.h"

namespace fyrn::kernels {
namespace {

// Name, needs, kernel, lanes, messages from which it pays.

constexpr LaneCandidate<Md5Lanes> md5[] = {
    {"avx512x32", cpu::avx512, X86(Md5_Lanes_X86Avx512x32), 32, 17},
    {"avx512x16", cpu::avx512, X86(Md5_Lanes_X86Avx512x16), 16, 2},
    {"avx2x16", cpu::avx2, X86(Md5_Lanes_X86Avx2x16), 16, 9},
    {"avx2x8", cpu::avx2, X86(Md5_Lanes_X86Avx2x8), 8, 2},
};

constexpr LaneTable table = {
    .md5 = md5,
};

} // namespace

const LaneTable& LaneKernels() {
    return table;
}

} // namespace fyrn::kernels
