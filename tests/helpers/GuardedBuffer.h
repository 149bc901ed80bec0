// SPDX-License-Identifier: MIT
// Memory between two pages that may not be touched, so that a kernel that reads
// or writes a byte too many ends the test program at once.
#pragma once

#include <cstddef>
#include <cstdint>

namespace helpers {

class GuardedBuffer {
  public:
    // Room for at least `size` bytes, all zero.
    explicit GuardedBuffer(std::size_t size);
    ~GuardedBuffer();
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;

    // The first byte behind the front guard.
    std::uint8_t* Front() const { return begin_; }

    // The first of `size` bytes that end directly before the rear guard.
    std::uint8_t* Rear(std::size_t size) const { return begin_ + room_ - size; }

  private:
    std::uint8_t* begin_;
    std::size_t room_; // whole pages
};

} // namespace helpers
