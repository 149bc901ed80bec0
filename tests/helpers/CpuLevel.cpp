// SPDX-License-Identifier: MIT
#include "tests/helpers/CpuLevel.h"

#include "tests/helpers/Processors.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace helpers {

fyrn::kernels::CpuFeatures CpuFeaturesOfLevel(std::string_view level) {
    if (level == "none")
        return fyrn::kernels::cpu::none;
    if (level == "all")
        return fyrn::kernels::cpu::all;
    for (const Processor& processor : Processors())
        if (processor.name == level)
            return processor.features;
    throw std::invalid_argument("no such level of processor features: " + std::string(level));
}

std::string_view CpuLevel() {
    const char* const level = std::getenv(cpuLevelVariable);
    return level == nullptr ? "all" : level;
}

} // namespace helpers
