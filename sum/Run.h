// SPDX-License-Identifier: MIT
// The whole run.
#pragma once

#include <span>
#include <string>

namespace sum {

// Runs with the program's name and its arguments, and returns the exit status.
int Run(std::span<const std::string> arguments);

} // namespace sum
