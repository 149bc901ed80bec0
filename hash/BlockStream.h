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

#include "hash/BlockBuffer.h"
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
    void Update(const std::uint8_t* bytes, std::size_t count) { buffer_.Update(*this, bytes, count); }

    // Pads the message and writes its digest of digestSize bytes. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    // The number of bytes taken in so far, modulo 2^64.
    std::uint64_t Length() const { return blocks_ * blockSize + buffer_.Fill(); }

    static const char* Kernel() { return Algorithm::Kernel(); }

    // Update in steps (LaneScheduler.h).
    using LaneState = Word;
    static constexpr std::size_t laneStateSize = std::size(Algorithm::initialState);
    static constexpr std::size_t BlockSize() { return blockSize; }
    static constexpr std::size_t WholeBlocks(std::size_t count) { return Buffer::WholeBlocks(count); }
    Word* State() { return state_; }
    std::size_t Head(const std::uint8_t* bytes, std::size_t count) {
        return buffer_.Head(*this, bytes, count);
    }
    void Tail(const std::uint8_t* bytes, std::size_t count) { buffer_.Tail(bytes, count); }
    void Compressed(std::size_t blocks) { blocks_ += blocks; }
    void CompressAlone(const std::uint8_t* blocks, std::size_t count);
    static auto Lanes() requires requires { Algorithm::Lanes(); }
    { return Algorithm::Lanes(); }
    static void CompressLanes(const auto& kernel, Word* const states[], const std::uint8_t* const blocks[],
                              std::size_t count) {
        kernel.function(states, blocks, count);
    }

  protected:
    using Buffer = BlockBuffer<blockSize, FullBlock::compressed>;

    // Ends a message that counts as so many blocks and bytes behind them.
    void Pad(std::uint64_t blocks, std::size_t fill, std::uint8_t padding = Algorithm::padding);
    void StoreDigest(std::uint8_t* digest) const;

    Word state_[std::size(Algorithm::initialState)];
    std::uint64_t blocks_; // compressed so far
    Buffer buffer_;

  private:
    void CompressBuffer();
    void StoreLength(std::uint64_t blocks, std::size_t fill);
};

template <class Algorithm>
void BlockStream<Algorithm>::Reset() {
    std::copy(std::begin(Algorithm::initialState), std::end(Algorithm::initialState), state_);
    blocks_ = 0;
    buffer_.Reset();
}

template <class Algorithm>
void BlockStream<Algorithm>::CompressAlone(const std::uint8_t* blocks, std::size_t count) {
    Algorithm::Compress(state_, blocks, count);
    blocks_ += count;
}

template <class Algorithm>
void BlockStream<Algorithm>::CompressBuffer() {
    buffer_.Reset();
    CompressAlone(buffer_.Bytes(), 1);
}

// The length in bits, as one number of lengthSize bytes.
template <class Algorithm>
void BlockStream<Algorithm>::StoreLength(std::uint64_t blocks, std::size_t fill) {
    std::uint8_t* const end = buffer_.Bytes() + blockSize;
    constexpr int blockBits = std::countr_zero(blockSize * 8);
    static_assert(std::has_single_bit(blockSize));
    const std::uint64_t low = (blocks * blockSize + fill) * 8;
    if constexpr (Algorithm::order == std::endian::little) {
        kernels::StoreLittle(end - 8, low);
    } else {
        kernels::StoreBig(end - 8, low);
        if constexpr (Algorithm::lengthSize >= 16)
            kernels::StoreBig(end - 16, blocks >> (64 - blockBits));
    }
}

template <class Algorithm>
void BlockStream<Algorithm>::Pad(std::uint64_t blocks, std::size_t fill, std::uint8_t padding) {
    buffer_.Update(*this, &padding, 1);
    if (buffer_.Fill() > blockSize - Algorithm::lengthSize) {
        buffer_.ZeroRest();
        CompressBuffer();
    }
    buffer_.ZeroRest();
    StoreLength(blocks, fill);
    CompressBuffer();
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
    Pad(blocks_, buffer_.Fill());
    StoreDigest(digest);
}

} // namespace fyrn::hash
