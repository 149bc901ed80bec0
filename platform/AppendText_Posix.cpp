// SPDX-License-Identifier: MIT
#include "platform/EncodedPieces.h"
#include "platform/File.h"
#include "platform/NativePath_Posix.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

bool WriteWhole(int descriptor, const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = write(descriptor, bytes, count);
        if (written > 0) {
            bytes += written;
            count -= static_cast<std::size_t>(written);
        } else if (written == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

} // namespace

// O_NONBLOCK: a pipe that bears the name must not stop the run.
bool AppendText(const wchar_t* path, const wchar_t* text) {
    constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    const int descriptor = open(NativePath(path), flags, 0666);
    if (descriptor == -1)
        return false;
    bool complete = true;
    ForEachEncodedPiece(text, [&](const char* bytes, std::size_t count) {
        complete = complete && WriteWhole(descriptor, bytes, count);
    });
    return close(descriptor) == 0 && complete;
}

} // namespace platform
