// SPDX-License-Identifier: MIT
#include "bench/adapters/Adapter.h"

#include <gcrypt.h>

#include <cstdlib>
#include <string>

// usage: adapter_gcrypt ALGORITHM[:OUTPUT-BYTES] FILE, the algorithm by libgcrypt's own name
int main(int argc, char* argv[]) {
    if (argc != 3 || gcry_check_version(nullptr) == nullptr)
        return 2;
    std::string name = argv[1];
    std::size_t outputSize = 0; // of an extendable-output function
    if (const std::size_t colon = name.find(':'); colon != std::string::npos) {
        outputSize = std::strtoul(name.c_str() + colon + 1, nullptr, 10);
        name.resize(colon);
    }
    const int algorithm = gcry_md_map_name(name.c_str());
    gcry_md_hd_t handle;
    if (algorithm == 0 || gcry_md_open(&handle, algorithm, 0) != 0)
        return 2;
    if (!adapter::FeedFile(argv[2], [handle](const std::uint8_t* bytes, std::size_t count) {
            gcry_md_write(handle, bytes, count);
        }))
        return 1;
    if (outputSize == 0) {
        adapter::PrintHex(gcry_md_read(handle, algorithm), gcry_md_get_algo_dlen(algorithm));
    } else {
        std::vector<std::uint8_t> digest(outputSize);
        gcry_md_extract(handle, algorithm, digest.data(), digest.size());
        adapter::PrintHex(digest.data(), digest.size());
    }
    gcry_md_close(handle);
    return 0;
}
