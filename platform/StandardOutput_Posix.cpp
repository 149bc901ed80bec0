// SPDX-License-Identifier: MIT
#include "platform/StandardOutput.h"

#include <cerrno>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

// The signal that comes first is ignored; see Startup.h.
bool FoundClosedPipe() {
    return errno == EPIPE;
}

bool IsPipeWithoutReader() {
    struct stat status;
    pollfd output = {STDOUT_FILENO, 0, 0};
    return fstat(STDOUT_FILENO, &status) == 0 && S_ISFIFO(status.st_mode) && poll(&output, 1, 0) == 1 &&
           (output.revents & POLLERR) != 0;
}

} // namespace platform
