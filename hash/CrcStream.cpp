// SPDX-License-Identifier: MIT
#include "hash/CrcStream.h"

namespace fyrn::hash {

void MakeCrcTables(kernels::CrcTables& tables, std::uint64_t polynomial) {
    for (std::uint64_t byte = 0; byte < 256; ++byte) {
        std::uint64_t crc = byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = crc >> 1 ^ (-(crc & 1) & polynomial);
        tables.slices[0][byte] = crc;
    }
    kernels::Crc_CompleteTables(tables);
}

} // namespace fyrn::hash
