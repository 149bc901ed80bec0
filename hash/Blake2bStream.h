// SPDX-License-Identifier: MIT
#pragma once

#include "hash/kernels/Blake2b.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// BLAKE2b (RFC 7693): sequential, without a key, with a digest of 1 to 64 bytes.
class Blake2bStream {
  public:
    static constexpr std::size_t blockSize = 128, maxDigestSize = 64; // bytes

    explicit Blake2bStream(std::size_t digestSize) : digestSize_(digestSize) { Reset(); }

    // Begins a message.
    void Reset();

    // Takes in bytes of the message. A block is compressed only when more follows it.
    void Update(const std::uint8_t* bytes, std::size_t count);

    // Compresses the last block and writes the digest. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    static const char* Kernel();

  protected:
    kernels::Blake2bState state_;

  private:
    std::size_t digestSize_;
    std::size_t fill_; // bytes in the buffer, 0 to blockSize
    std::uint8_t buffer_[blockSize];
};

} // namespace fyrn::hash
