// SPDX-License-Identifier: MIT
#include "platform/Startup.h"

#include "platform/Text.h"

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

// The system gives out the lowest free number, so the first number that is not one of the three ends the loop.
void PrepareStandardStreams() {
    int descriptor;
    do
        descriptor = open("/dev/null", O_RDWR);
    while (descriptor >= STDIN_FILENO && descriptor <= STDERR_FILENO);
    if (descriptor > STDERR_FILENO)
        close(descriptor);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN); // the end of a file's permitted size: a copy takes back what it wrote
}

WideArguments WidenArguments(int count, const char* const* arguments) {
    WideArguments wide;
    for (int i = 0; i < count; ++i)
        wide.texts.push_back(DecodeName(arguments[i]));
    for (std::wstring& text : wide.texts)
        wide.pointers.push_back(text.data());
    wide.pointers.push_back(nullptr);
    return wide;
}

} // namespace platform
