// SPDX-License-Identifier: MIT
#include "crypto/kernels/KernelSelect.h"

namespace kernels {
namespace {

constexpr Candidate<Md5Blocks> md5[] = {
    {"portable", cpu::none, Md5_Blocks_Portable},
};

template <class Function, std::size_t size>
Function* Best(const Candidate<Function> (&candidates)[size]) {
    const CpuFeatures available = AvailableCpuFeatures();
    const Candidate<Function>* candidate = candidates;
    while ((candidate->needs & ~available) != 0)
        ++candidate;
    return candidate->function;
}

} // namespace

std::span<const Candidate<Md5Blocks>> Md5Candidates() {
    return md5;
}

const KernelSet& Kernels() {
    static const KernelSet chosen = {
        .md5 = Best(md5),
    };
    return chosen;
}

} // namespace kernels
