// SPDX-License-Identifier: MIT
// What the system tells of a file, as Tree.h has it.
#pragma once

#include "platform/Tree.h"

#include <windows.h>

namespace platform {

EntryKind KindOf(DWORD attributes, DWORD reparseTag);

// Returns 0 or errno.
int StatusOf(HANDLE file, EntryStatus& status);

// The number that the runtime's own functions give for an error of the system.
int ErrnoOf(DWORD error);

} // namespace platform
