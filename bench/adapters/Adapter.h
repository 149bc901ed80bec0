// SPDX-License-Identifier: MIT
// The common part of the peers that are libraries without a command of their own: `ADAPTER ALGORITHM FILE` prints the
// digest of the file, read in pieces of 1 MiB, so that every library is measured under the same conditions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <vector>

namespace adapter {

// Feeds the file to update(bytes, count). False when it cannot be opened.
template <class Update>
bool FeedFile(const char* path, Update update) {
    std::FILE* const file = std::fopen(path, "rb");
    if (file == nullptr)
        return false;
    std::setvbuf(file, nullptr, _IONBF, 0); // plain reads, no copy on the way
    std::vector<std::uint8_t> buffer(1 << 20);
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file))
        update(buffer.data(), count);
    std::fclose(file);
    return true;
}

inline void PrintHex(const std::uint8_t* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        std::printf("%02x", static_cast<unsigned int>(bytes[i]));
    std::putchar('\n');
}

} // namespace adapter
