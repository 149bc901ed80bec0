// SPDX-License-Identifier: MIT
// Which files of a tree are old ones under a new name, or copies.
#pragma once

#include "sum/Entries.h"

#include <deque>

namespace sum {

// Each missing entry becomes the origin of at most one new file with the same digests, and that
// file is renamed: files that kept the last component of their path first, then in the order of the
// paths. A new file that is left is a copy when an entry that did not change has its digests. Empty
// files are neither.
void PairFiles(Entries& entries, std::deque<FoundFile>& files);

} // namespace sum
