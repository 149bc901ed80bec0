// SPDX-License-Identifier: MIT
// The kernels in use: for every algorithm the first of its candidates that this machine can run.
#pragma once

#include "crypto/kernels/CpuFeatures.h"
#include "crypto/kernels/Md5.h"

#include <span>

namespace kernels {

// One implementation of an algorithm, and all that it needs of the processor.
template <class Function>
struct Candidate {
    const char* name;
    CpuFeatures needs;
    Function* function;
};

// Every candidate, best first; the last one is the portable
// kernel and needs nothing. For tests and benchmarks.
std::span<const Candidate<Md5Blocks>> Md5Candidates();

struct KernelSet {
    Md5Blocks* md5;
};

// Chosen once, at first use.
const KernelSet& Kernels();

} // namespace kernels
