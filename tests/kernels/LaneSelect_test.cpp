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
        std::set<std::pair<std::string, fyrn::kernels::CpuFeatures>> entries;
        for (const auto& candidate : member(LaneKernels())) {
            EXPECT_TRUE(entries.emplace(candidate.name, candidate.needs).second)
                << algorithm << " " << candidate.name;
            EXPECT_GE(candidate.pays, 2u) << algorithm << " " << candidate.name;
            EXPECT_LE(candidate.pays, candidate.lanes) << algorithm << " " << candidate.name;
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

// A candidate is passed over only when it cannot run or does not pay.
TEST(LaneSelect, ChoosesTheFirstCandidateThatCanRunAndPays) {
    ForEachLaneAlgorithm([](const char* algorithm, auto member) {
        const auto candidates = member(LaneKernels());
        for (std::size_t messages = 2; messages <= mostMessages; ++messages) {
            const auto* const chosen = ChooseLanes(candidates, messages);
            for (const auto& candidate : candidates) {
                if (&candidate == chosen)
                    break;
                EXPECT_FALSE(CanRun(candidate.needs) && candidate.pays <= messages)
                    << algorithm << " " << candidate.name << " is passed over for " << messages;
            }
            if (chosen != nullptr) {
                EXPECT_TRUE(CanRun(chosen->needs)) << algorithm << " " << chosen->name;
                EXPECT_LE(chosen->pays, messages) << algorithm << " " << chosen->name;
            }
            if (messages == mostMessages)
                std::cout << algorithm << ": " << (chosen == nullptr ? "none" : chosen->name) << "\n";
        }
    });
}

} // namespace
