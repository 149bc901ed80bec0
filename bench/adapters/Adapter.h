// SPDX-License-Identifier: MIT
// The common part of the peers that are libraries without a command of their own: `ADAPTER ALGORITHM FILE` prints the
// digest of the file, read in pieces of 1 MiB, so that every library is measured under the same conditions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace adapter {

// Feeds the file to update(bytes, count). False when it cannot be opened.
template <class Update>
bool FeedFile(const char* path, Update update) {
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    std::vector<std::uint8_t> buffer(1 << 20);
    for (ssize_t count; (count = read(descriptor, buffer.data(), buffer.size())) > 0;)
        update(buffer.data(), static_cast<std::size_t>(count));
    close(descriptor);
    return true;
}

inline void PrintHex(const std::uint8_t* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        std::printf("%02x", static_cast<unsigned int>(bytes[i]));
    std::putchar('\n');
}

} // namespace adapter
