// SPDX-License-Identifier: MIT
#pragma once

#include "hash/KernelName.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Crc.h"
#include "hash/kernels/KernelSelect.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// The byte table of a right-shifting CRC, from its reflected polynomial, and what else the kernels need. Takes some 30
// microseconds.
void MakeCrcTables(kernels::CrcTables& tables, std::uint64_t polynomial);

// The tables of a polynomial, made at its first use.
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

// A right-shifting CRC with a register of 16, 32 or 64 bits. The digest is the result, its highest byte first.
template <class Register>
class CrcStream {
  public:
    static constexpr std::size_t blockSize = 1, digestSize = sizeof(Register); // bytes

    // `value` is what the register starts with and what the result is xored with. The tables, which are those of the
    // polynomial, must last.
    CrcStream(const kernels::CrcTables& tables, Register value) : tables_(&tables), value_(value) { Reset(); }

    // Begins a message.
    void Reset() { register_ = value_; }

    // Takes in bytes of the message.
    void Update(const std::uint8_t* bytes, std::size_t count) {
        register_ = kernels::Kernels().crc(*tables_, register_, bytes, count);
    }

    // Writes the digest. Reset begins the next message.
    void Finish(std::uint8_t* digest) {
        kernels::StoreBig(digest, static_cast<Register>(register_ ^ value_));
    }

    static const char* Kernel() { return CrcKernelName(); }

  private:
    const kernels::CrcTables* tables_;
    std::uint64_t register_;
    Register value_;
};

// One of a catalogue, with a value of all ones.
template <class Register, Register polynomial>
class CatalogueCrcStream : public CrcStream<Register> {
  public:
    CatalogueCrcStream()
        : CrcStream<Register>(CrcTablesOf<polynomial>(), static_cast<Register>(~Register{0})) {}
};

} // namespace fyrn::hash
