// SPDX-License-Identifier: MIT
#include "platform/ByteStream.h"

#include <cerrno>
#include <climits>
#include <poll.h>
#include <unistd.h>

namespace platform {

static_assert(wholeToPipe >= _POSIX_PIPE_BUF && wholeToPipe <= PIPE_BUF);

namespace {

// Somebody else may have set the descriptor not to wait.
void WaitUntilWritable(int descriptor) {
    pollfd waited{descriptor, POLLOUT, 0};
    poll(&waited, 1, -1);
}

int WriteAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno == EAGAIN)
            WaitUntilWritable(descriptor);
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

int WriteToOutput(std::string_view bytes) {
    return WriteAll(STDOUT_FILENO, bytes);
}

int WriteToErrors(std::string_view bytes) {
    return WriteAll(STDERR_FILENO, bytes);
}

bool OutputIsTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

bool ErrorsAreTerminal() {
    return isatty(STDERR_FILENO) != 0;
}

} // namespace platform
