// SPDX-License-Identifier: MIT
// What is found on this machine, compared with what Linux says of it.
#include "hash/kernels/CpuFeatures.h"

#include "tests/helpers/CpuLevel.h"

#include <gtest/gtest.h>

#include <sys/utsname.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace {

using Flags = std::set<std::string>;

// The first processor's.
Flags LinuxFlags() {
    std::ifstream file("/proc/cpuinfo");
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with("flags"))
            continue;
        std::istringstream words(line.substr(line.find(':') + 1));
        Flags flags;
        for (std::string flag; words >> flag;)
            flags.insert(flag);
        return flags;
    }
    return {};
}

TEST(CpuFeaturesPosix, AreThoseThatLinuxNames) {
    utsname system;
    ASSERT_EQ(uname(&system), 0);
    const Flags flags = LinuxFlags();
    if (std::string(system.machine) != "x86_64" || sizeof(void*) != 8 || flags.empty())
        GTEST_SKIP() << "for 64-bit x86 processors under Linux";
    namespace cpu = fyrn::kernels::cpu;
    fyrn::kernels::CpuFeatures expected = cpu::none;
    const auto when = [&](std::initializer_list<const char*> needed, fyrn::kernels::CpuFeatures feature) {
        for (const char* const flag : needed)
            if (!flags.contains(flag))
                return;
        expected |= feature;
    };
    when({"ssse3", "sse4_1"}, cpu::ssse3);
    when({"ssse3", "sse4_1", "pclmulqdq"}, cpu::pclmul);
    when({"ssse3", "sse4_1", "sha_ni"}, cpu::sha);
    when({"bmi1", "bmi2"}, cpu::bmi);
    when({"avx", "avx2"}, cpu::avx2);
    when({"bmi1", "bmi2", "avx2", "avx512f", "avx512bw", "avx512dq", "avx512vl"}, cpu::avx512);
    when({"avx512f", "avx512vbmi"}, cpu::avx512vbmi);
    when({"ssse3", "sse4_1", "gfni"}, cpu::gfni);
    when({"avx2", "vpclmulqdq"}, cpu::vpclmul);
    EXPECT_EQ(fyrn::kernels::AvailableCpuFeatures(),
              expected & helpers::CpuFeaturesOfLevel(helpers::CpuLevel()));
}

} // namespace
