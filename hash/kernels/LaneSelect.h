// SPDX-License-Identifier: MIT
// Lane kernels, which compress blocks of many messages side by side. They have a table of their own, so that a program
// that never asks for one carries none.
//
// A lane kernel takes as many states, and as many messages, as it has lanes, and the same count of blocks from each.
// All states and messages must be there: what has nothing to do repeats a message of another lane into a state that
// nobody reads, which may be one state for all such lanes.
#pragma once

#include "hash/kernels/Blake2b.h"
#include "hash/kernels/BlockForm.h"
#include "hash/kernels/CpuFeatures.h"
#include "hash/kernels/Keccak.h"
#include "hash/kernels/Md4.h"
#include "hash/kernels/Md5.h"
#include "hash/kernels/Sha1.h"
#include "hash/kernels/Sha256.h"
#include "hash/kernels/Sha512.h"
#include "hash/kernels/Skein.h"
#include "hash/kernels/Tiger.h"

#include <cstddef>
#include <limits>
#include <span>

namespace fyrn::kernels {

// One implementation of an algorithm, and all that it needs of the processor.
template <class Function>
struct LaneCandidate {
    const char* name;
    CpuFeatures needs;
    Function* function;
    std::size_t lanes;
    // The least number of messages that it compresses faster than the kernels behind it and the one for one message.
    std::size_t pays;
    // The same where there are SHA instructions, which the kernels behind it and the one for one message use.
    std::size_t paysBesideSha = pays;
};

inline constexpr std::size_t paysNever = std::numeric_limits<std::size_t>::max();

// A member for every algorithm that has lane kernels.
template <template <class Function> class Of>
struct PerLaneAlgorithm {
    Of<Blake2bLanes> blake2b;
    Of<KeccakLanes> keccak;
    Of<Md4Lanes> md4;
    Of<Md5Lanes> md5;
    Of<Sha1Lanes> sha1;
    Of<Sha256Lanes> sha256;
    Of<Sha512Lanes> sha512;
    Of<SkeinLanes> skein256;
    Of<SkeinLanes> skein512;
    Of<SkeinLanes> skein1024;
    Of<TigerLanes> tiger;
};

// Calls visit(name, member) for every such algorithm; member(x) is that member of x, a PerLaneAlgorithm or a
// PerAlgorithm (KernelSelect.h). The member's type has a Form as there.
template <class Visit>
void ForEachLaneAlgorithm(Visit visit) {
    // clang-format off
    visit("Blake2b", [](auto& of) -> auto& { return of.blake2b; });
    visit("Keccak", [](auto& of) -> auto& { return of.keccak; });
    visit("Md4", WithForm<BlockForm<std::uint32_t, 4, 64>>([](auto& of) -> auto& { return of.md4; }));
    visit("Md5", WithForm<BlockForm<std::uint32_t, 4, 64>>([](auto& of) -> auto& { return of.md5; }));
    visit("Sha1", WithForm<BlockForm<std::uint32_t, 5, 64>>([](auto& of) -> auto& { return of.sha1; }));
    visit("Sha256", WithForm<BlockForm<std::uint32_t, 8, 64>>([](auto& of) -> auto& { return of.sha256; }));
    visit("Sha512", WithForm<BlockForm<std::uint64_t, 8, 128>>([](auto& of) -> auto& { return of.sha512; }));
    visit("Skein256", [](auto& of) -> auto& { return of.skein256; });
    visit("Skein512", [](auto& of) -> auto& { return of.skein512; });
    visit("Skein1024", [](auto& of) -> auto& { return of.skein1024; });
    visit("Tiger", WithForm<BlockForm<std::uint64_t, 3, 64>>([](auto& of) -> auto& { return of.tiger; }));
    // clang-format on
}

template <class Function>
using LaneCandidates = std::span<const LaneCandidate<Function>>;
using LaneTable = PerLaneAlgorithm<LaneCandidates>;

// Every candidate, best first for as many messages as there may be.
const LaneTable& LaneKernels();

// From how many messages a candidate pays on this processor.
template <class Function>
std::size_t PaysFrom(const LaneCandidate<Function>& candidate) {
    return (AvailableCpuFeatures() & cpu::sha) != 0 ? candidate.paysBesideSha : candidate.pays;
}

// The kernel for that number of messages on this processor; null where one message after the other is faster.
template <class Function>
const LaneCandidate<Function>* ChooseLanes(LaneCandidates<Function> candidates, std::size_t messages) {
    for (const LaneCandidate<Function>& candidate : candidates)
        if ((candidate.needs & ~AvailableCpuFeatures()) == 0 && PaysFrom(candidate) <= messages)
            return &candidate;
    return nullptr;
}

} // namespace fyrn::kernels
