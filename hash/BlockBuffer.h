// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace fyrn::hash {

// What becomes of a full block. Where the last block of a message is compressed in a way of its own, a full one is kept
// back until more follows it.
enum class FullBlock { compressed, keptBack };

// What a stream keeps of its message between updates: bytes that do not fill a block, or the last block.
//
// Blocks have `capacity` bytes, or as many as every call says, up to that. Whole blocks, in the buffer or where they are,
// go to stream.CompressAlone(blocks, count).
template <std::size_t capacity, FullBlock fullBlock>
class BlockBuffer {
  public:
    // Empties the buffer; what it held stays there, out of reach.
    void Reset() { fill_ = 0; }

    // The block, and the number of bytes in it that wait.
    std::uint8_t* Bytes() { return bytes_; }
    std::size_t Fill() const { return fill_; }

    // Zeroes the block behind the bytes that wait.
    void ZeroRest(std::size_t blockSize = capacity) { std::memset(bytes_ + fill_, 0, blockSize - fill_); }

    // Takes in bytes.
    template <class Stream>
    void Update(Stream& stream, const std::uint8_t* bytes, std::size_t count,
                std::size_t blockSize = capacity) {
        const std::size_t head = Head(stream, bytes, count, blockSize);
        const std::size_t whole = WholeBlocks(count - head, blockSize);
        if (whole != 0)
            stream.CompressAlone(bytes + head, whole);
        const std::size_t tail = head + whole * blockSize;
        Tail(bytes + tail, count - tail);
    }

    // The steps of Update. The first completes the block that waits, as far as the bytes go, and returns how many it
    // took; if not all, the buffer is empty.
    template <class Stream>
    std::size_t Head(Stream& stream, const std::uint8_t* bytes, std::size_t count,
                     std::size_t blockSize = capacity) {
        if (fill_ == 0)
            return 0;
        const std::size_t taken = std::min(count, blockSize - fill_);
        std::copy_n(bytes, taken, bytes_ + fill_);
        fill_ += taken;
        if (fullBlock == FullBlock::keptBack ? taken != count : fill_ == blockSize) {
            stream.CompressAlone(bytes_, 1);
            fill_ = 0;
        }
        return taken;
    }

    // The second: how many blocks behind the head can be compressed where they are.
    static constexpr std::size_t WholeBlocks(std::size_t count, std::size_t blockSize = capacity) {
        if (fullBlock == FullBlock::keptBack)
            return count == 0 ? 0 : (count - 1) / blockSize;
        return count / blockSize;
    }

    // The last: keeps what is left. Nothing is left behind a head that took everything.
    void Tail(const std::uint8_t* bytes, std::size_t count) {
        std::copy_n(bytes, count, bytes_ + fill_);
        fill_ += count;
    }

  private:
    std::size_t fill_;
    std::uint8_t bytes_[capacity];
};

} // namespace fyrn::hash
