// SPDX-License-Identifier: MIT
// Which kernels are chosen, on this processor and in a run that is held to a lesser one (CpuLevel.h).
#include "hash/kernels/KernelSelect.h"

#include "tests/helpers/CpuLevel.h"

#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <string>

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

bool IsFast(fyrn::kernels::CpuMaker fastOn) {
    return fastOn == fyrn::kernels::CpuMaker::any || fastOn == fyrn::kernels::ProcessorMaker();
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
            EXPECT_EQ(isChosen, CanRun(candidate.needs) && IsFast(candidate.fastOn))
                << algorithm << " " << candidate.name;
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

// The names of the kernels that are chosen on a processor of this maker which has everything.
std::map<std::string, std::string> ChosenOn(fyrn::kernels::CpuMaker maker) {
    const fyrn::kernels::KernelSet chosen = fyrn::kernels::KernelsFor(fyrn::kernels::cpu::all, maker);
    std::map<std::string, std::string> names;
    fyrn::kernels::ForEachAlgorithm([&](const char* algorithm, auto member) {
        for (const auto& candidate : member(fyrn::kernels::KernelCandidates()))
            if (candidate.function == member(chosen))
                names[algorithm] = candidate.name;
    });
    return names;
}

// bench/check_speed.py measures whether it is so.
TEST(KernelSelect, WhatIsFasterDependsOnTheMaker) {
    if (fyrn::kernels::KernelCandidates().tiger.front().function == nullptr)
        GTEST_SKIP() << "this build has portable kernels only";
    auto amd = ChosenOn(fyrn::kernels::CpuMaker::amd);
    auto other = ChosenOn(fyrn::kernels::CpuMaker::other);
    EXPECT_EQ(amd["Blake2b"], "avx2");
    EXPECT_EQ(amd["Keccak"], "bmi");
    EXPECT_EQ(amd["Md4"], "portable");
    EXPECT_EQ(amd["Md5"], "portable");
    EXPECT_EQ(amd["Tiger"], "bmi");
    EXPECT_EQ(other["Tiger"], "portable");
    for (const char* const algorithm : {"Blake2b", "Keccak", "Md4", "Md5"})
        EXPECT_EQ(other[algorithm], "avx512") << algorithm;
    for (const char* const algorithm : {"Crc", "Md6", "Skein1024", "Whirlpool"})
        EXPECT_EQ(amd[algorithm], "avx512") << algorithm;
}

} // namespace
