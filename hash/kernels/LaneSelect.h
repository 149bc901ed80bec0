// SPDX-License-Identifier: MIT
// Lane kernels, which compress blocks of many messages side by side. They have a table of their own, so that a program
// that never asks for one carries none.
//
// A lane kernel takes as many states, and as many messages, as it has lanes, and the same count of blocks from each.
// All states and messages must be there: what has nothing to do repeats a message of another lane into a state that
// nobody reads, which may be one state for all such lanes.
#pragma once

#include "hash/kernels/CpuFeatures.h"
#include "hash/kernels/Md5.h"

#include <cstddef>
#include <span>

namespace fyrn::kernels {

// One implementation of an algorithm, and all that it needs of the processor.
template <class Function>
struct LaneCandidate {
    const char* name;
    CpuFeatures needs;
    Function* function;
    std::size_t lanes;
    std::size_t
        pays; // the least number of messages that it compresses faster than the kernels behind it, and those
              // for one message, which such processors have
};

// A member for every algorithm that has lane kernels.
template <template <class Function> class Of>
struct PerLaneAlgorithm {
    Of<Md5Lanes> md5;
};

// Calls visit(name, member) for every such algorithm; member(x) is that member of x, a PerLaneAlgorithm or a
// PerAlgorithm (KernelSelect.h).
template <class Visit>
void ForEachLaneAlgorithm(Visit visit) {
    visit(
        "Md5", [](auto& of) -> auto& { return of.md5; });
}

template <class Function>
using LaneCandidates = std::span<const LaneCandidate<Function>>;
using LaneTable = PerLaneAlgorithm<LaneCandidates>;

// Every candidate, best first for as many messages as there may be.
const LaneTable& LaneKernels();

// The kernel for that number of messages on this processor; null where one message after the other is faster.
template <class Function>
const LaneCandidate<Function>* ChooseLanes(LaneCandidates<Function> candidates, std::size_t messages) {
    for (const LaneCandidate<Function>& candidate : candidates)
        if ((candidate.needs & ~AvailableCpuFeatures()) == 0 && candidate.pays <= messages)
            return &candidate;
    return nullptr;
}

} // namespace fyrn::kernels
