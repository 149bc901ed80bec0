// SPDX-License-Identifier: MIT
// Which files of a walk count.
#pragma once

#include "sum/Name.h"
#include "sum/Options.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace sum {

// Appends a rule for each line of a file; empty lines are passed over. Throws UsageError when it
// cannot be read.
void AppendExclusions(const Name& file, std::vector<PathRule>& rules);

// Whether the file counts. The last rule that matches decides; when none does, it counts unless the
// first rule includes. A pattern with a slash is held against the path, whole or from `below` on,
// which is where the part below the operand begins; any other against the last component.
bool Counts(const std::vector<PathRule>& rules, std::string_view path, std::size_t below);

// Whether the directory is entered: unless the last rule that matches excludes it.
bool IsEntered(const std::vector<PathRule>& rules, std::string_view path, std::size_t below);

} // namespace sum
