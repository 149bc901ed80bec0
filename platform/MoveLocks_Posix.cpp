// SPDX-License-Identifier: MIT
#include "platform/MoveLocks_Posix.h"

#include "platform/MoveNames_Posix.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>

namespace platform {

namespace {

int OpenDirectoryOf(const char* path) {
    return open(SplitNativePath(path).parent, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

// The order of two directories, which is the same in every run: negative, 0 for one directory, or
// positive.
int Compare(const Descriptor& a, const Descriptor& b) {
    struct stat statusA;
    struct stat statusB;
    if (fstat(a.Number(), &statusA) != 0 || fstat(b.Number(), &statusB) != 0)
        return -1;
    if (statusA.st_dev != statusB.st_dev)
        return statusA.st_dev < statusB.st_dev ? -1 : 1;
    return statusA.st_ino == statusB.st_ino ? 0 : statusA.st_ino < statusB.st_ino ? -1 : 1;
}

// A run holds its locks for a few system calls. Whoever keeps one for longer is stopped, or no run
// of this program, and is not waited for to the end.
bool Lock(const Descriptor& directory) {
    constexpr timespec pause = {0, 1'000'000};
    constexpr int attempts = 5000;
    for (int i = 0; i < attempts; ++i) {
        if (flock(directory.Number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK)
            return true;
        nanosleep(&pause, nullptr);
    }
    return false;
}

} // namespace

DirectoryLocks::DirectoryLocks(const char* path, const char* otherPath)
    : directory_(OpenDirectoryOf(path)), otherDirectory_(OpenDirectoryOf(otherPath)) {
    const int order = Compare(directory_, otherDirectory_);
    const Descriptor& first = order <= 0 ? directory_ : otherDirectory_;
    const Descriptor& second = order <= 0 ? otherDirectory_ : directory_;
    held_ = Lock(first) && (order == 0 || Lock(second));
}

} // namespace platform
