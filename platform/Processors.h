// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// How many processors this process may keep busy: those that it may run on, or fewer where the system grants it only so
// much time. At least 1.
unsigned UsableProcessors();

} // namespace platform
