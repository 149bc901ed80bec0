// SPDX-License-Identifier: MIT
// How many descriptors this process has open: none may stay behind.
#pragma once

#include <cstddef>
#include <fcntl.h>

inline std::size_t OpenDescriptors() {
    std::size_t count = 0;
    for (int descriptor = 0; descriptor < 1024; ++descriptor)
        count += fcntl(descriptor, F_GETFD) != -1;
    return count;
}
