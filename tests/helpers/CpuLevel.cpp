// SPDX-License-Identifier: MIT
#include "tests/helpers/CpuLevel.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace helpers {

fyrn::kernels::CpuFeatures CpuFeaturesOfLevel(std::string_view level) {
    namespace cpu = fyrn::kernels::cpu;
    constexpr fyrn::kernels::CpuFeatures sse = cpu::ssse3 | cpu::pclmul | cpu::sha;
    if (level == "none")
        return cpu::none;
    if (level == "sse")
        return sse;
    if (level == "avx2")
        return sse | cpu::bmi | cpu::avx2;
    if (level == "all")
        return cpu::all;
    throw std::invalid_argument("no such level of processor features: " + std::string(level));
}

std::string_view CpuLevel() {
    const char* const level = std::getenv(cpuLevelVariable);
    return level == nullptr ? "all" : level;
}

} // namespace helpers
