// SPDX-License-Identifier: MIT
// Which kernels are chosen, on this processor and in a run that is held to a lesser one (CpuLevel.h).
#include "hash/kernels/KernelSelect.h"

#include "tests/helpers/CpuLevel.h"

#include <gtest/gtest.h>

#include <iostream>

namespace {

using fyrn::kernels::AvailableCpuFeatures;
using fyrn::kernels::Kernels;

// Calls check(algorithm, candidates, chosen kernel) for every algorithm.
template <class Check>
void ForEachChoice(Check check) {
    fyrn::kernels::ForEachAlgorithm([&check](const char* algorithm, auto member) {
        check(algorithm, member(fyrn::kernels::KernelCandidates()), member(Kernels()));
    });
}

bool CanRun(fyrn::kernels::CpuFeatures needs) {
    return (needs & ~AvailableCpuFeatures()) == 0;
}

TEST(KernelSelect, TheVisitorMeetsEveryAlgorithm) {
    std::size_t checked = 0;
    ForEachChoice([&checked](const char*, auto, auto*) { ++checked; });
    EXPECT_EQ(checked, sizeof(fyrn::kernels::KernelSet) / sizeof(void (*)()));
}

TEST(KernelSelect, NoFeatureIsUsedThatTheRunIsNotAllowed) {
    EXPECT_EQ(AvailableCpuFeatures() & ~helpers::CpuFeaturesOfLevel(helpers::CpuLevel()),
              fyrn::kernels::cpu::none);
}

TEST(KernelSelect, ChoosesTheFirstCandidateThatCanRun) {
    ForEachChoice([](const char* algorithm, auto candidates, auto* chosen) {
        for (const auto& candidate : candidates) {
            const bool isChosen = candidate.function == chosen;
            EXPECT_EQ(isChosen, CanRun(candidate.needs)) << algorithm << " " << candidate.name;
            std::cout << algorithm << " " << candidate.name << (isChosen ? ": chosen\n" : ": skipped\n");
            if (isChosen)
                break;
        }
    });
}

// Where kernels for 64-bit x86 are not compiled, they are null: no processor may seem to have what they need.
TEST(KernelSelect, EveryCandidateThatCanRunIsThere) {
    ForEachChoice([](const char* algorithm, auto candidates, auto* chosen) {
        EXPECT_NE(chosen, nullptr) << algorithm;
        for (const auto& candidate : candidates)
            EXPECT_TRUE(candidate.function != nullptr || !CanRun(candidate.needs))
                << algorithm << " " << candidate.name;
    });
}

TEST(KernelSelect, WithoutAnyFeatureThePortableKernelsAreChosen) {
    if (AvailableCpuFeatures() != fyrn::kernels::cpu::none)
        GTEST_SKIP() << "this run has features to use";
    ForEachChoice([](const char* algorithm, auto candidates, auto* chosen) {
        EXPECT_EQ(candidates.back().function, chosen) << algorithm;
    });
}

} // namespace
