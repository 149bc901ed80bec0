// SPDX-License-Identifier: MIT
// The system calls of a move that differ between file systems, where a test can put others in their place.
#pragma once

namespace platform {

struct MoveCalls {
    // As renameat2 with RENAME_NOREPLACE: 0, or -1 with errno.
    int (*renameNoReplace)(const char* from, const char* to);
    int (*link)(const char* from, const char* to);
};

extern MoveCalls moveCalls;

} // namespace platform
