// SPDX-License-Identifier: MIT
// Memory for very many small things that live equally long.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

namespace sum {

// What it gives out stays where it is until the arena ends. Throws std::bad_alloc.
class Arena {
  public:
    static constexpr std::size_t alignment = alignof(void*);

    // Room for so many bytes, aligned.
    std::byte* Take(std::size_t size) {
        Align();
        return TakeAnywhere(size);
    }

    // A copy of the text.
    std::string_view Keep(std::string_view text) {
        std::byte* const copy = TakeAnywhere(text.size());
        if (!text.empty())
            std::memcpy(copy, text.data(), text.size());
        return {reinterpret_cast<const char*>(copy), text.size()};
    }

  private:
    static constexpr std::size_t blockSize = std::size_t{256} * 1024;

    void Align() {
        const std::size_t odd = left_ % alignment; // blocks are aligned, and so is their size
        next_ += odd;
        left_ -= odd;
    }

    std::byte* TakeAnywhere(std::size_t size) {
        if (size > blockSize / 4)
            return blocks_.emplace_back(new std::byte[size]).get();
        if (size > left_) {
            next_ = blocks_.emplace_back(new std::byte[blockSize]).get();
            left_ = blockSize;
        }
        std::byte* const taken = next_;
        next_ += size;
        left_ -= size;
        return taken;
    }

    std::vector<std::unique_ptr<std::byte[]>> blocks_;
    std::byte* next_ = nullptr;
    std::size_t left_ = 0;
};

} // namespace sum
