// SPDX-License-Identifier: MIT
#include "platform/File.h"

#include "platform/Text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

InputFile OpenForReading(const wchar_t* path) {
    InputFile file;
    file.native = open(EncodeName(path).c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    return file;
}

std::size_t ReadFully(InputFile& file, unsigned char* buffer, std::size_t capacity) {
    std::size_t total = 0;
    while (total < capacity && !file.ended) {
        const ssize_t count = read(static_cast<int>(file.native), buffer + total, capacity - total);
        file.ended = count <= 0;
        if (count > 0)
            total += static_cast<std::size_t>(count);
    }
    return total;
}

std::int64_t SizeOf(InputFile& file) {
    struct stat status;
    return fstat(static_cast<int>(file.native), &status) == 0 ? status.st_size : 0;
}

bool IsRegular(const InputFile& file) {
    struct stat status;
    return fstat(static_cast<int>(file.native), &status) == 0 && S_ISREG(status.st_mode);
}

void Close(InputFile& file) {
    close(static_cast<int>(file.native));
    file = InputFile{};
}

} // namespace platform
