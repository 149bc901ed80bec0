// SPDX-License-Identifier: MIT
// That the kernel suite in this program does run emulated kernels, and all that there are.
#include "tests/emulated/Sources.h"

#include "hash/kernels/KernelSelect.h"

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

// Without those that only others call.
Names SourcesForAvx512() {
    Names names = SourcesToEmulate();
    std::erase_if(names, [](const std::string& name) { return !name.ends_with("_X86Avx512.cpp"); });
    return names;
}

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

bool SuiteHas(const std::string& instance) {
    const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
    for (int i = 0; i < tests.total_test_suite_count(); ++i) {
        if (std::string(tests.GetTestSuite(i)->name()).starts_with(instance + "/KernelSuite/"))
            return true;
    }
    return false;
}

TEST(Emulated, EverySourceForAvx512IsCompiledForTheEmulation) {
    EXPECT_FALSE(SourcesForAvx512().empty());
    EXPECT_EQ(emulated::Sources(), SourcesToEmulate());
}

TEST(Emulated, EverySourceForAvx512HasItsKernelAmongTheCandidatesThatAreRun) {
    Names run;
    ForEachChosen([&run](const std::string& algorithm, const auto& candidate) {
        if ((candidate.needs & fyrn::kernels::cpu::avx512) == 0)
            return;
        std::cout << "emulated: " << algorithm << " " << candidate.name << "\n";
        run.insert(algorithm + "_X86Avx512.cpp");
    });
    EXPECT_EQ(run, SourcesForAvx512());
}

TEST(Emulated, TheKernelSuiteTakesEveryAlgorithmWithAnEmulatedKernel) {
    for (const std::string& source : SourcesForAvx512()) {
        std::string instance = source.substr(0, source.find('_'));
        if (instance.starts_with("Skein")) // one instance for the three sizes of state
            instance = "Skein";
        EXPECT_TRUE(SuiteHas(instance)) << instance;
    }
}

} // namespace
