// SPDX-License-Identifier: MIT
// Memory to read files into.
#pragma once

#include <cstddef>
#include <memory>
#include <new>

namespace sum {

// Begins with a page: copying out of the system's cache took a fifth longer to 16 bytes behind one. It is not
// cleared.
class ReadBuffer {
  public:
    ReadBuffer() = default;

    // Throws std::bad_alloc.
    explicit ReadBuffer(std::size_t size)
        : bytes_(static_cast<std::byte*>(::operator new(size, alignment))), size_(size) {}

    std::byte* Data() const { return bytes_.get(); }
    std::size_t Size() const { return size_; }

  private:
    static constexpr std::align_val_t alignment{4096};

    struct Free {
        void operator()(std::byte* bytes) const { ::operator delete(bytes, alignment); }
    };

    std::unique_ptr<std::byte, Free> bytes_;
    std::size_t size_ = 0;
};

} // namespace sum
