// SPDX-License-Identifier: MIT
// Comparing a tree with a list of it.
#pragma once

#include "sum/Options.h"

namespace sum {

// Reads the list and the files that the operands name, prints what differs, sorted by path, and
// says the totals. Returns the exit status: 0 when list and tree are the same, 1 when they differ,
// treeTrouble when something could not be read. Throws TreeError, OutputError and std::bad_alloc.
int CompareTree(const Options& options);

} // namespace sum
