// SPDX-License-Identifier: MIT
#pragma once

#include "hash/KernelName.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Crc.h"
#include "hash/kernels/KernelSelect.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// The byte table of a right-shifting CRC, from its reflected polynomial, and what else the kernels need.
void MakeCrcTables(kernels::CrcTables& tables, std::uint64_t polynomial);

// The tables of a polynomial, made at its first use in some 30 microseconds.
template <std::uint64_t polynomial>
const kernels::CrcTables& CrcTablesOf() {
    static const kernels::CrcTables tables = [] {
        kernels::CrcTables made;
        MakeCrcTables(made, polynomial);
        return made;
    }();
    return tables;
}

inline const char* CrcKernelName() {
    return KernelName(kernels::KernelCandidates().crc, kernels::Kernels().crc);
}

// A right-shifting CRC with a register of 16, 32 or 64 bits that starts with all ones, and whose result is complemented.
// The digest is the result, its highest byte first.
template <class Register, Register polynomial>
class CrcStream {
  public:
    static constexpr std::size_t blockSize = 1, digestSize = sizeof(Register); // bytes

    // Begins a message.
    void Reset() { register_ = ones; }

    // Takes in bytes of the message.
    void Update(const std::uint8_t* bytes, std::size_t count) {
        register_ = kernels::Kernels().crc(CrcTablesOf<polynomial>(), register_, bytes, count);
    }

    // Writes the digest. Reset begins the next message.
    void Finish(std::uint8_t* digest) { kernels::StoreBig(digest, static_cast<Register>(register_ ^ ones)); }

    static const char* Kernel() { return CrcKernelName(); }

  private:
    static constexpr Register ones = static_cast<Register>(~Register{0});

    std::uint64_t register_;
};

} // namespace fyrn::hash
