// SPDX-License-Identifier: MIT
// That the kernel suite in this program does run emulated kernels, and all that there are.
#include "tests/emulated/Sources.h"

#include "hash/kernels/KernelSelect.h"
#include "hash/kernels/LaneSelect.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace {

using Names = std::set<std::string>;

// What the build found to emulate.
Names SourcesToEmulate() {
    Names names;
    std::istringstream list(FYRN_EMULATED_KERNELS);
    for (std::string name; std::getline(list, name, ':');)
        names.insert(name);
    return names;
}

// Those of kernels for one message, or of lane kernels; without those that only others call.
Names SourcesEndingIn(const char* ending) {
    Names names = SourcesToEmulate();
    std::erase_if(names, [ending](const std::string& name) { return !name.ends_with(ending); });
    return names;
}

constexpr const char* forOneMessage = "_X86Avx512.cpp";
constexpr const char* forLanes = "_X86Avx512Lanes.cpp";

// Calls visit(algorithm, chosen kernel's candidate) for every algorithm: the suite runs every candidate that can be
// chosen, and the one that is chosen is the first.
template <class Visit>
void ForEachChosen(Visit visit) {
    fyrn::kernels::ForEachAlgorithm([&visit](const char* algorithm, auto member) {
        for (const auto& candidate : member(fyrn::kernels::KernelCandidates())) {
            if ((candidate.needs & ~fyrn::kernels::AvailableCpuFeatures()) != 0)
                continue;
            visit(std::string(algorithm), candidate);
            break;
        }
    });
}

// The instance of the suites that takes the kernel of a source.
std::string InstanceOf(const std::string& source) {
    const std::string algorithm = source.substr(0, source.find('_'));
    if (algorithm.starts_with("Skein")) // one instance for the three sizes of state
        return "Skein";
    return algorithm == "Blake3Nodes" ? "Blake3Chunks" : algorithm; // nodes are chunks or parents
}

bool SuiteHas(const std::string& name) {
    const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
    for (int i = 0; i < tests.total_test_suite_count(); ++i) {
        if (std::string(tests.GetTestSuite(i)->name()).starts_with(name))
            return true;
    }
    return false;
}

TEST(Emulated, EverySourceForAvx512IsCompiledForTheEmulation) {
    EXPECT_FALSE(SourcesEndingIn(forOneMessage).empty());
    EXPECT_FALSE(SourcesEndingIn(forLanes).empty());
    EXPECT_EQ(emulated::Sources(), SourcesToEmulate());
}

TEST(Emulated, EverySourceForAvx512HasItsKernelAmongTheCandidatesThatAreRun) {
    Names run;
    ForEachChosen([&run](const std::string& algorithm, const auto& candidate) {
        if ((candidate.needs & fyrn::kernels::cpu::avx512) == 0)
            return;
        std::cout << "emulated: " << algorithm << " " << candidate.name << "\n";
        run.insert(algorithm + forOneMessage);
    });
    EXPECT_EQ(run, SourcesEndingIn(forOneMessage));
}

TEST(Emulated, EverySourceOfLanesForAvx512HasItsKernelAmongTheCandidatesThatAreRun) {
    Names run;
    fyrn::kernels::ForEachLaneAlgorithm([&run](const std::string& algorithm, auto member) {
        for (const auto& candidate : member(fyrn::kernels::LaneKernels()))
            if ((candidate.needs & fyrn::kernels::cpu::avx512) != 0 &&
                (candidate.needs & ~fyrn::kernels::AvailableCpuFeatures()) == 0)
                run.insert(algorithm + forLanes);
    });
    EXPECT_EQ(run, SourcesEndingIn(forLanes));
}

TEST(Emulated, TheSuitesTakeEveryAlgorithmWithAnEmulatedKernel) {
    for (const std::string& source : SourcesEndingIn(forOneMessage))
        EXPECT_TRUE(SuiteHas(InstanceOf(source) + "/KernelSuite/")) << source;
    for (const std::string& source : SourcesEndingIn(forLanes))
        EXPECT_TRUE(SuiteHas(InstanceOf(source) + "/LaneSuite/")) << source;
}

} // namespace
