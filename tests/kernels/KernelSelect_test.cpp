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
void ForEachAlgorithm(Check check) {
    check("Blake2b", fyrn::kernels::Blake2bCandidates(), Kernels().blake2b);
    check("Crc", fyrn::kernels::CrcCandidates(), Kernels().crc);
    check("Keccak", fyrn::kernels::KeccakCandidates(), Kernels().keccak);
    check("Md4", fyrn::kernels::Md4Candidates(), Kernels().md4);
    check("Md5", fyrn::kernels::Md5Candidates(), Kernels().md5);
    check("Md6", fyrn::kernels::Md6Candidates(), Kernels().md6);
    check("Sha1", fyrn::kernels::Sha1Candidates(), Kernels().sha1);
    check("Sha256", fyrn::kernels::Sha256Candidates(), Kernels().sha256);
    check("Sha512", fyrn::kernels::Sha512Candidates(), Kernels().sha512);
    check("Skein256", fyrn::kernels::Skein256Candidates(), Kernels().skein256);
    check("Skein512", fyrn::kernels::Skein512Candidates(), Kernels().skein512);
    check("Skein1024", fyrn::kernels::Skein1024Candidates(), Kernels().skein1024);
    check("Tiger", fyrn::kernels::TigerCandidates(), Kernels().tiger);
    check("Whirlpool", fyrn::kernels::WhirlpoolCandidates(), Kernels().whirlpool);
}

bool CanRun(fyrn::kernels::CpuFeatures needs) {
    return (needs & ~AvailableCpuFeatures()) == 0;
}

TEST(KernelSelect, EveryAlgorithmIsAmongThoseThatAreChecked) {
    std::size_t checked = 0;
    ForEachAlgorithm([&checked](const char*, auto, auto*) { ++checked; });
    EXPECT_EQ(checked, sizeof(fyrn::kernels::KernelSet) / sizeof(void (*)()));
}

TEST(KernelSelect, NoFeatureIsUsedThatTheRunIsNotAllowed) {
    EXPECT_EQ(AvailableCpuFeatures() & ~helpers::CpuFeaturesOfLevel(helpers::CpuLevel()),
              fyrn::kernels::cpu::none);
}

TEST(KernelSelect, ChoosesTheFirstCandidateThatCanRun) {
    ForEachAlgorithm([](const char* algorithm, auto candidates, auto* chosen) {
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
    ForEachAlgorithm([](const char* algorithm, auto candidates, auto* chosen) {
        EXPECT_NE(chosen, nullptr) << algorithm;
        for (const auto& candidate : candidates)
            EXPECT_TRUE(candidate.function != nullptr || !CanRun(candidate.needs))
                << algorithm << " " << candidate.name;
    });
}

TEST(KernelSelect, WithoutAnyFeatureThePortableKernelsAreChosen) {
    if (AvailableCpuFeatures() != fyrn::kernels::cpu::none)
        GTEST_SKIP() << "this run has features to use";
    ForEachAlgorithm([](const char* algorithm, auto candidates, auto* chosen) {
        EXPECT_EQ(candidates.back().function, chosen) << algorithm;
    });
}

} // namespace
