// SPDX-License-Identifier: MIT
#pragma once

#include "hash/BlockAlgorithms.h"
#include "hash/BlockStream.h"

#include <cstddef>
#include <cstdint>

// Whirlpool that miscounts long updates, a deliberate quirk: the number of bits of one update is a 32-bit number with a
// sign, which is widened to 64 bits before it is added to the length. From 268,435,456 bytes in one update on it is not
// the true one. Pieces of a file and salts are too short to meet this.
class WhirlpoolStream : public fyrn::hash::BlockStream<fyrn::hash::Whirlpool> {
  public:
    void Reset() {
        BlockStream::Reset();
        surplus_ = 0;
    }

    void Update(const std::uint8_t* bytes, std::size_t count) {
        surplus_ += CountedBits(count) / (8 * blockSize) - count / blockSize;
        BlockStream::Update(bytes, count);
    }

    void Finish(std::uint8_t* digest) {
        Pad(blocks_ + surplus_, buffer_.Fill());
        StoreDigest(digest);
    }

    // What an update of so many bytes adds to the length.
    static std::uint64_t CountedBits(std::size_t bytes) {
        return static_cast<std::uint64_t>(static_cast<std::int32_t>(static_cast<std::uint32_t>(bytes) << 3));
    }

    // Compresses the buffer as it is into the state.
    void Transform() { fyrn::hash::Whirlpool::Compress(state_, buffer_.Bytes(), 1); }

  private:
    std::uint64_t
        surplus_; // blocks counted that were not there, modulo 2^64. Bytes behind them are counted right
};
