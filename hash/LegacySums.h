// SPDX-License-Identifier: MIT
// The sums of the commands cksum (POSIX) and sum (BSD and System V). Digests are the sum's bytes, the highest first.
#pragma once

#include "hash/CrcStream.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// The CRC of POSIX cksum: a register that shifts left, starts with 0 and takes in the message's length last.
class CksumStream {
  public:
    static constexpr std::size_t blockSize = 1, digestSize = 4; // bytes

    void Reset();
    void Update(const std::uint8_t* bytes, std::size_t count);
    void Finish(std::uint8_t* digest);
    static const char* Kernel() { return CrcKernelName(); }

  private:
    void Absorb(const std::uint8_t* bytes, std::size_t count);

    std::uint64_t register_; // its bits in the opposite order
    std::uint64_t length_;   // bytes
};

// The sum of BSD: 16 bits that are rotated to the right before each byte is added.
class BsdSumStream {
  public:
    static constexpr std::size_t blockSize = 1, digestSize = 2; // bytes

    void Reset() { sum_ = 0; }
    void Update(const std::uint8_t* bytes, std::size_t count);
    void Finish(std::uint8_t* digest) { kernels::StoreBig(digest, sum_); }
    static const char* Kernel() { return "portable"; }

  private:
    std::uint16_t sum_;
};

// The sum of System V: all bytes added modulo 2^32, and the result folded to 16 bits.
class SysvSumStream {
  public:
    static constexpr std::size_t blockSize = 1, digestSize = 2; // bytes

    void Reset() { sum_ = 0; }
    void Update(const std::uint8_t* bytes, std::size_t count);
    void Finish(std::uint8_t* digest);
    static const char* Kernel() { return "portable"; }

  private:
    std::uint32_t sum_;
};

} // namespace fyrn::hash
