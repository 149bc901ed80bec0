// SPDX-License-Identifier: MIT
// What processors of the past and present say of themselves, from the makers' manuals: a new one and its neighbours,
// which often differ in one feature. Only what kernels ask for is noted.
#pragma once

#include "hash/kernels/Cpuid.h"

#include <span>
#include <string_view>

namespace helpers {

struct Processor {
    std::string_view name; // a level of tests, too (CpuLevel.h)
    fyrn::kernels::CpuidWords words;
    fyrn::kernels::CpuFeatures features; // those that kernels may use
};

std::span<const Processor> Processors();

} // namespace helpers
