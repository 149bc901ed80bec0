// SPDX-License-Identifier: MIT
// The processor features that a whole run of a test program is held to, by the environment variable FYRN_TEST_CPU:
//
//   none     what every processor of the kind has: portable kernels only
//   all      whatever there is; also when the variable is not set
//   zen      or another name of Processors.h: what that processor has
//
// Only test programs read the variable.
#pragma once

#include "hash/kernels/CpuFeatures.h"

#include <string_view>

namespace helpers {

inline constexpr const char* cpuLevelVariable = "FYRN_TEST_CPU";

// The features of a level. Throws std::invalid_argument for a name that is none.
fyrn::kernels::CpuFeatures CpuFeaturesOfLevel(std::string_view level);

// The level of this run.
std::string_view CpuLevel();

} // namespace helpers
