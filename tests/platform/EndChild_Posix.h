// SPDX-License-Identifier: MIT
// The end of a test's child process, which must not clean up what belongs to its parent.
#pragma once

#include <unistd.h>

// Present only in builds that measure coverage.
extern "C" [[gnu::weak]] void __gcov_dump();

[[noreturn]] inline void EndChild(int status) {
    if (__gcov_dump != nullptr)
        __gcov_dump();
    _exit(status);
}
