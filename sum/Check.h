// SPDX-License-Identifier: MIT
// Checking files against checksum lists.
#pragma once

#include "sum/Options.h"

namespace sum {

// Checks all files in all lists that are the operands, prints what came of each in the order of the
// lists, and returns the exit status: 0 when all was as it should be; 1 when a file differs or
// cannot be read, and when a list cannot be read or verifies nothing. Throws OutputError and
// std::bad_alloc.
int Check(const Options& options);

} // namespace sum
