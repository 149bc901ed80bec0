// SPDX-License-Identifier: MIT
// The end of a test's child process, which must not clean up what belongs to its parent.
#pragma once

#include <unistd.h>

// Present only in builds that measure coverage, which link it for this purpose.
extern "C" [[gnu::weak]] void __gcov_dump();

inline void SaveCoverage() {
    if (__gcov_dump != nullptr)
        __gcov_dump();
}

[[noreturn]] inline void EndChild(int status) {
    SaveCoverage();
    _exit(status);
}
