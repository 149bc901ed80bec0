// SPDX-License-Identifier: MIT
// The wording of the progress line.
#pragma once

#include "sum/Progress.h"

#include <string>

namespace sum {

// "PATH  3/40 files  1.5 of 20.0 GiB  800.0 MiB/s  0:24 left" in fewer than `columns` columns: the
// path shortened at its beginning, and empty when there is no room for anything of use. A total
// that is not known is left out.
std::string ProgressText(const Name& name, const Amount& done, const Amount& total, double seconds,
                         std::size_t columns);

} // namespace sum
