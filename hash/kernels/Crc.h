// SPDX-License-Identifier: MIT
// Right-shifting CRCs of 16, 32 and 64 bits with any polynomial.
//
// A right-shifting register of 16 or 32 bits behaves exactly like one of 64 bits whose polynomial and register
// are extended by zero bits at the top: the added bits are never set. So one kernel serves all three widths.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::kernels {

// What the kernels need to know of a polynomial.
struct CrcTables {
    // slices[k][b]: what byte b, met by a zero register, has become after k more zero bytes.
    std::uint64_t slices[16][256];
    // folds[k]: constants that carry 16 bytes over 128 * (k + 1) bits, x^(distance + 63) for the first eight bytes
    // and x^(distance - 1) for the other eight, modulo the polynomial, bit 63 standing for x^0.
    std::uint64_t folds[16][2];
};

// Completes the tables from slices[0], the CRC's byte table, which the caller has filled. Any polynomial will
// do, also 0 and those without a constant term.
void Crc_CompleteTables(CrcTables& tables);

// Returns the register after `count` bytes.
using CrcBytes = std::uint64_t(const CrcTables& tables, std::uint64_t crc, const std::uint8_t* bytes,
                               std::size_t count);

CrcBytes Crc_Bytes_Portable;
CrcBytes Crc_Bytes_X86Pclmul;
CrcBytes Crc_Bytes_X86Vpclmul;
CrcBytes Crc_Bytes_X86Avx512;

} // namespace fyrn::kernels
