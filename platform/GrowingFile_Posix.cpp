// SPDX-License-Identifier: MIT
#include "platform/GrowingFile.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace platform {

int GrowingFile::Open(const std::string& name) {
    native_ = open(name.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0666);
    return native_ == -1 ? errno : 0;
}

int GrowingFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(static_cast<int>(native_), bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

void GrowingFile::Close() {
    const int descriptor = static_cast<int>(std::exchange(native_, -1));
    if (descriptor != -1)
        close(descriptor);
}

int RemoveFile(const std::string& name) {
    return unlink(name.c_str()) == 0 ? 0 : errno;
}

} // namespace platform
