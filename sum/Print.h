// SPDX-License-Identifier: MIT
// Printing digests.
#pragma once

#include "sum/Options.h"

namespace sum {

// Hashes the files and writes their lines. Returns the exit status. Throws OutputError.
int Print(const Options& options);

} // namespace sum
