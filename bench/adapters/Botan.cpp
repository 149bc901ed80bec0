// SPDX-License-Identifier: MIT
#include "bench/adapters/Adapter.h"

#include <botan/hash.h>

// usage: adapter_botan ALGORITHM FILE, the algorithm by Botan's own name
int main(int argc, char* argv[]) {
    if (argc != 3)
        return 2;
    const auto hash = Botan::HashFunction::create(argv[1]);
    if (!hash)
        return 2;
    if (!adapter::FeedFile(
            argv[2], [&hash](const std::uint8_t* bytes, std::size_t count) { hash->update(bytes, count); }))
        return 1;
    const auto digest = hash->final();
    adapter::PrintHex(digest.data(), digest.size());
    return 0;
}
