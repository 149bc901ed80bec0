// SPDX-License-Identifier: MIT
// Which lane kernels are chosen for how many messages, on this processor and in a run that is held to a lesser one.
#include "hash/kernels/LaneSelect.h"

#include <gtest/gtest.h>

#include <iostream>
#include <set>
#include <string>

namespace {

using fyrn::kernels::AvailableCpuFeatures;
using fyrn::kernels::ChooseLanes;
using fyrn::kernels::ForEachLaneAlgorithm;
using fyrn::kernels::LaneKernels;
using fyrn::kernels::PaysFrom;

constexpr std::size_t mostMessages = 64;

bool CanRun(fyrn::kernels::CpuFeatures needs) {
    return (needs & ~AvailableCpuFeatures()) == 0;
}

TEST(LaneSelect, TheVisitorMeetsEveryAlgorithm) {
    std::size_t met = 0;
    ForEachLaneAlgorithm([&met](const char*, auto member) { met += member(LaneKernels()).empty() ? 0 : 1; });
    EXPECT_EQ(met, sizeof(fyrn::kernels::LaneTable) / sizeof(std::span<const int>));
}

TEST(LaneSelect, EveryCandidateHasANameAndLanesAndPaysWithinThem) {
    ForEachLaneAlgorithm([](const char* algorithm, auto member) {
        std::set<std::string> names;
        for (const auto& candidate : member(LaneKernels())) {
            EXPECT_TRUE(names.insert(candidate.name).second) << algorithm << " " << candidate.name;
            EXPECT_GE(candidate.pays, 2u) << algorithm << " " << candidate.name;
            EXPECT_LE(candidate.pays, candidate.lanes) << algorithm << " " << candidate.name;
            EXPECT_GE(candidate.paysBesideSha, candidate.pays) << algorithm << " " << candidate.name;
            EXPECT_TRUE(candidate.function != nullptr || !CanRun(candidate.needs))
                << algorithm << " " << candidate.name;
        }
    });
}

TEST(LaneSelect, OneMessageNeedsNoLanes) {
    ForEachLaneAlgorithm([](const char* algorithm, auto member) {
        EXPECT_EQ(ChooseLanes(member(LaneKernels()), 0), nullptr) << algorithm;
        EXPECT_EQ(ChooseLanes(member(LaneKernels()), 1), nullptr) << algorithm;
    });
}

// Pairs with SHA instructions are faster than a few messages in wide vectors, and than eight in AVX2's for SHA-256.
TEST(LaneSelect, ShaInstructionsMakeWideVectorsPayLater) {
    const bool sha = (AvailableCpuFeatures() & fyrn::kernels::cpu::sha) != 0;
    for (const auto& candidate : LaneKernels().sha256) {
        if (candidate.name == std::string("avx512x16")) {
            EXPECT_EQ(PaysFrom(candidate), sha ? 13u : 3u);
        }
        if (candidate.name == std::string("avx2x8")) {
            EXPECT_EQ(PaysFrom(candidate), sha ? fyrn::kernels::paysNever : 3u);
        }
    }
    if (sha) {
        const auto* const forEight = ChooseLanes(LaneKernels().sha256, 8);
        ASSERT_NE(forEight, nullptr);
        EXPECT_STREQ(forEight->name, "shax2");
    }
}

// A candidate is passed over only when it cannot run or does not pay.
TEST(LaneSelect, ChoosesTheFirstCandidateThatCanRunAndPays) {
    ForEachLaneAlgorithm([](const char* algorithm, auto member) {
        const auto candidates = member(LaneKernels());
        for (std::size_t messages = 2; messages <= mostMessages; ++messages) {
            const auto* const chosen = ChooseLanes(candidates, messages);
            for (const auto& candidate : candidates) {
                if (&candidate == chosen)
                    break;
                EXPECT_FALSE(CanRun(candidate.needs) && PaysFrom(candidate) <= messages)
                    << algorithm << " " << candidate.name << " is passed over for " << messages;
            }
            if (chosen != nullptr) {
                EXPECT_TRUE(CanRun(chosen->needs)) << algorithm << " " << chosen->name;
                EXPECT_LE(PaysFrom(*chosen), messages) << algorithm << " " << chosen->name;
            }
            if (messages == mostMessages)
                std::cout << algorithm << ": " << (chosen == nullptr ? "none" : chosen->name) << "\n";
        }
    });
}

} // namespace
