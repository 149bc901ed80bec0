// SPDX-License-Identifier: MIT
#include "platform/ReadAhead.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

// Of a large file the system reads ahead by itself, once it is being read. Opening anything but a regular file could do
// something, so the name is looked up first.
void Announce(const char* path) {
    constexpr off_t beginning = 1 << 20;
    struct stat status;
    if (stat(path, &status) != 0 || !S_ISREG(status.st_mode))
        return;
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0)
        return;
    posix_fadvise(descriptor, 0, beginning, POSIX_FADV_WILLNEED);
    close(descriptor);
}

} // namespace platform
