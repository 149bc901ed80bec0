// SPDX-License-Identifier: MIT
// What the program tells about itself.
#pragma once

#include "sum/Options.h"
#include "sum/Tool.h"

#include <string>

namespace sum {

std::string HelpText(const Tool& tool);
std::string VersionText(const Tool& tool);

// A line for each function: its name for --algorithm, the bits of its digest, its full name.
std::string FunctionList();

// Which implementations the run uses.
std::string DebugText(const Options& options);

} // namespace sum
