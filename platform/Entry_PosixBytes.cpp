// SPDX-License-Identifier: MIT
// The entry of a program that takes its arguments as bytes.
#include "platform/ByteMain.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace {

// Takes the places of standard streams that were closed, in such a way that using them fails as
// before, and that no file opened later can become one of them.
void FillClosedStreams() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (fcntl(descriptor, F_GETFD) == -1) [[maybe_unused]]
            const int filled = open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

} // namespace

int main(int argc, char* argv[]) {
    FillClosedStreams();
    // Writing to a closed pipe, or beyond the size that a file may have, fails like any other
    // writing.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        return ByteMain(std::vector<std::string>(argv, argv + argc));
    } catch (const std::bad_alloc&) {
        std::fputs("memory exhausted\n", stderr);
        return 1;
    }
}
