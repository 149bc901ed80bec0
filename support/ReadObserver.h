// SPDX-License-Identifier: MIT
// A place from which to watch how far the reading of a file has come. The engines call it and know no more.
#pragma once

#include <cstddef>
#include <cstdint>

// Neither call may throw.
struct ReadObserver {
    void (*begin)(std::int64_t size); // reading begins; bytes of the file, 0 when that cannot be told
    void (*read)(std::size_t count);  // so many more bytes were read and hashed
};

// The one observer, if there is one. Set before the first file is read.
inline const ReadObserver* readObserver = nullptr;
