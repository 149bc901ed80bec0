// SPDX-License-Identifier: MIT
#include "bench/adapters/Adapter.h"

#include <isa-l.h>

#include <string>

// usage: adapter_isal crc16|crc32|crc64 FILE. The polynomials are the library's own, so only the speed compares.
int main(int argc, char* argv[]) {
    if (argc != 3)
        return 2;
    const std::string algorithm = argv[1];
    std::uint64_t crc = 0;
    const bool opened = adapter::FeedFile(argv[2], [&](const std::uint8_t* bytes, std::size_t count) {
        if (algorithm == "crc16")
            crc = crc16_t10dif(static_cast<std::uint16_t>(crc), bytes, count);
        else if (algorithm == "crc32")
            crc = crc32_gzip_refl(static_cast<std::uint32_t>(crc), bytes, count);
        else
            crc = crc64_iso_refl(crc, bytes, count);
    });
    if (!opened)
        return 1;
    std::printf("%016llx\n", static_cast<unsigned long long>(crc));
    return 0;
}
