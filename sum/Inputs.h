// SPDX-License-Identifier: MIT
// The files that the command line names.
#pragma once

#include "sum/Walk.h"

namespace sum {

// Tells the sink of all files to be hashed, in order: operands or the names in a file, and with
// --recursive what is below those that are directories. `ownFiles` are those that this run writes.
void ForEachInput(const Options& options, const std::vector<platform::FileIdentity>& ownFiles,
                  InputSink& sink);

} // namespace sum
