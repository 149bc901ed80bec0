// SPDX-License-Identifier: MIT
// The system calls of a move whose failure decides how it goes on, in a table whose entries tests replace.
#pragma once

#include <cstddef>
#include <sys/types.h>

namespace platform {

struct MoveCalls {
    int (*renameNoReplace)(const char* from, const char* to);
    int (*link)(const char* from, const char* to); // of a link, not of what it leads to
    int (*rename)(const char* from, const char* to);
    int (*unlink)(const char* path);
    int (*openUnnamed)(const char* directory);                  // a new file to be written, without a name
    int (*nameUnnamed)(const char* descriptor, const char* to); // given as its entry in /proc/self/fd
    ssize_t (*write)(int descriptor, const void* bytes, std::size_t count);
    int (*fchown)(int descriptor, uid_t owner, gid_t group);
    int (*fsync)(int descriptor);
};

extern const MoveCalls systemMoveCalls;

// The table in use.
extern MoveCalls moveCalls;

} // namespace platform
