// SPDX-License-Identifier: MIT
// How much a run is going to read, for those who watch it.
#pragma once

#include "sum/Options.h"
#include "sum/Progress.h"
#include "sum/Walk.h"

#include <vector>

namespace sum {

// Looks at all files that the command line names but `ownFiles`.
Amount AmountOfInputs(const Options& options, const std::vector<platform::FileIdentity>& ownFiles);

} // namespace sum
