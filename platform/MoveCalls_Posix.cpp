// SPDX-License-Identifier: MIT
#include "platform/MoveCalls_Posix.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace platform {

namespace {

// By number, because not every C library has a name for it.
int RenameNoReplace(const char* from, const char* to) {
    constexpr unsigned noReplace = 1;
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, noReplace));
}

int LinkItself(const char* from, const char* to) {
    return linkat(AT_FDCWD, from, AT_FDCWD, to, 0);
}

int OpenUnnamed(const char* directory) {
    return open(directory, O_WRONLY | O_TMPFILE | O_CLOEXEC, 0600);
}

int NameUnnamed(const char* descriptor, const char* to) {
    return linkat(AT_FDCWD, descriptor, AT_FDCWD, to, AT_SYMLINK_FOLLOW);
}

} // namespace

constexpr MoveCalls systemMoveCalls = {RenameNoReplace, LinkItself, std::rename, unlink, OpenUnnamed,
                                       NameUnnamed,     write,      fchown,      fsync};

MoveCalls moveCalls = systemMoveCalls;

} // namespace platform
