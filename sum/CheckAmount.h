// SPDX-License-Identifier: MIT
// How much a check is going to read, for those who watch it.
#pragma once

#include "sum/Options.h"
#include "sum/Progress.h"

namespace sum {

// Looks at all files of all lists. Nothing when a list can be read only once, or not at all.
Amount AmountToCheck(const Options& options);

} // namespace sum
