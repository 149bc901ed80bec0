// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// Whether the call that just failed found that nobody reads standard output any more.
bool FoundClosedPipe();

// Whether nobody reads standard output any more, as far as that can be told without writing to it.
bool IsPipeWithoutReader();

} // namespace platform
