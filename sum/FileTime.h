// SPDX-License-Identifier: MIT
// When the time of a file tells that it has not changed.
#pragma once

#include <cstdint>

namespace sum {

// Nanoseconds since 1970.
std::int64_t Now();

// Whether a file that was modified at one time and read from `now` on would have another time if it
// had been modified again since. File systems count in steps of up to 2 seconds, so a younger file
// may change and keep its time.
bool IsSettled(std::int64_t modified, std::int64_t now);

} // namespace sum
