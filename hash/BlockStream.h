// SPDX-License-Identifier: MIT
// Messages in pieces, for the functions that compress one block after another and end with the message's length
// (Merkle-Damgard). What sets one function apart from the next stands in its algorithm type (BlockAlgorithms.h):
//
//   struct Md5 {
//       using Word = std::uint32_t;                                    // of the state
//       static constexpr std::size_t blockSize = 64, digestSize = 16;  // bytes
//       static constexpr std::size_t lengthSize = 8;                   // bytes that hold the length in bits
//       static constexpr std::endian order = std::endian::little;      // of length and digest
//       static constexpr std::uint8_t padding = 0x80;                  // the byte behind the message
//       static constexpr Word initialState[] = {...};
//       static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count);
//       static const char* Kernel();                                   // name of the kernel in use
//   };
#pragma once

#include "hash/kernels/ByteOrder.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace fyrn::hash {

template <class Algorithm>
class BlockStream {
  public:
    using Word = typename Algorithm::Word;
    static constexpr std::size_t blockSize = Algorithm::blockSize;
    static constexpr std::size_t digestSize = Algorithm::digestSize;

    // Begins a message.
    void Reset();

    // Takes in bytes of the message.
    void Update(const std::uint8_t* bytes, std::size_t count);

    // Pads the message and writes its digest of digestSize bytes. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    // The number of bytes taken in so far, modulo 2^64.
    std::uint64_t Length() const { return blocks_ * blockSize + fill_; }

    static const char* Kernel() { return Algorithm::Kernel(); }

    // Update in steps (LaneScheduler.h).
    using LaneState = Word;
    static constexpr std::size_t laneStateSize = std::size(Algorithm::initialState);
    static constexpr std::size_t BlockSize() { return blockSize; }
    static constexpr std::size_t WholeBlocks(std::size_t count) { return count / blockSize; }
    Word* State() { return state_; }
    std::size_t Head(const std::uint8_t* bytes, std::size_t count);
    void Tail(const std::uint8_t* bytes, std::size_t count);
    void Compressed(std::size_t blocks) { blocks_ += blocks; }
    void CompressAlone(const std::uint8_t* blocks, std::size_t count) { Compress(blocks, count); }
    static auto Lanes() requires requires { Algorithm::Lanes(); }
    { return Algorithm::Lanes(); }
    static void CompressLanes(const auto& kernel, Word* const states[], const std::uint8_t* const blocks[],
                              std::size_t count) {
        kernel.function(states, blocks, count);
    }

  protected:
    void Compress(const std::uint8_t* blocks, std::size_t count);
    void Pad(std::uint64_t blocks, std::size_t fill);
    void StoreDigest(std::uint8_t* digest) const;

    Word state_[std::size(Algorithm::initialState)];
    std::uint64_t blocks_; // compressed so far
    std::size_t fill_;     // bytes in the buffer, 0 to blockSize - 1
    std::uint8_t buffer_[blockSize];

  private:
    void FillWithZeros(std::size_t end);
    void StoreLength(std::uint64_t blocks, std::size_t fill);
};

template <class Algorithm>
void BlockStream<Algorithm>::Reset() {
    std::copy(std::begin(Algorithm::initialState), std::end(Algorithm::initialState), state_);
    blocks_ = 0;
    fill_ = 0;
}

template <class Algorithm>
void BlockStream<Algorithm>::Compress(const std::uint8_t* blocks, std::size_t count) {
    Algorithm::Compress(state_, blocks, count);
    blocks_ += count;
}

// Completes the block in the buffer, as far as the bytes go.
template <class Algorithm>
std::size_t BlockStream<Algorithm>::Head(const std::uint8_t* bytes, std::size_t count) {
    if (fill_ == 0)
        return 0;
    const std::size_t taken = std::min(count, blockSize - fill_);
    std::copy_n(bytes, taken, buffer_ + fill_);
    fill_ += taken;
    if (fill_ == blockSize) {
        Compress(buffer_, 1);
        fill_ = 0;
    }
    return taken;
}

// Keeps less than a block. Nothing comes behind a head that took everything.
template <class Algorithm>
void BlockStream<Algorithm>::Tail(const std::uint8_t* bytes, std::size_t count) {
    std::copy_n(bytes, count, buffer_ + fill_);
    fill_ += count;
}

template <class Algorithm>
void BlockStream<Algorithm>::Update(const std::uint8_t* bytes, std::size_t count) {
    const std::size_t head = Head(bytes, count);
    const std::size_t whole = WholeBlocks(count - head);
    if (whole != 0)
        Compress(bytes + head, whole);
    const std::size_t tail = head + whole * blockSize;
    Tail(bytes + tail, count - tail);
}

template <class Algorithm>
void BlockStream<Algorithm>::FillWithZeros(std::size_t end) {
    std::memset(buffer_ + fill_, 0, end - fill_);
    fill_ = end;
}

// The length in bits, as one number of lengthSize bytes.
template <class Algorithm>
void BlockStream<Algorithm>::StoreLength(std::uint64_t blocks, std::size_t fill) {
    constexpr int blockBits = std::countr_zero(blockSize * 8);
    static_assert(std::has_single_bit(blockSize));
    const std::uint64_t low = (blocks * blockSize + fill) * 8;
    if constexpr (Algorithm::order == std::endian::little) {
        kernels::StoreLittle(buffer_ + blockSize - 8, low);
    } else {
        kernels::StoreBig(buffer_ + blockSize - 8, low);
        if constexpr (Algorithm::lengthSize >= 16)
            kernels::StoreBig(buffer_ + blockSize - 16, blocks >> (64 - blockBits));
    }
}

// Ends a message of so many blocks and bytes behind them.
template <class Algorithm>
void BlockStream<Algorithm>::Pad(std::uint64_t blocks, std::size_t fill) {
    buffer_[fill_++] = Algorithm::padding;
    if (fill_ > blockSize - Algorithm::lengthSize) {
        FillWithZeros(blockSize);
        Compress(buffer_, 1);
        fill_ = 0;
    }
    FillWithZeros(blockSize);
    StoreLength(blocks, fill);
    Compress(buffer_, 1);
    fill_ = 0;
}

template <class Algorithm>
void BlockStream<Algorithm>::StoreDigest(std::uint8_t* digest) const {
    std::uint8_t bytes[sizeof state_];
    for (std::size_t i = 0; i < std::size(state_); ++i)
        if constexpr (Algorithm::order == std::endian::little)
            kernels::StoreLittle(bytes + sizeof(Word) * i, state_[i]);
        else
            kernels::StoreBig(bytes + sizeof(Word) * i, state_[i]);
    std::memcpy(digest, bytes, digestSize);
}

template <class Algorithm>
void BlockStream<Algorithm>::Finish(std::uint8_t* digest) {
    Pad(blocks_, fill_);
    StoreDigest(digest);
}

} // namespace fyrn::hash
