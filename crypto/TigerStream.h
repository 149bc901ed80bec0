// SPDX-License-Identifier: MIT
#pragma once

#include "hash/BlockAlgorithms.h"
#include "hash/BlockStream.h"

#include <cstddef>
#include <cstdint>

// Tiger with a length that falls short, a deliberate quirk: bytes that one update left over are never counted when a later
// update completes their block. Without a salt no bytes are left over before the end, and the digest is the standard's;
// users' recorded salted digests depend on the shortfall.
class TigerStream : public fyrn::hash::BlockStream<fyrn::hash::Tiger2<24>> {
  public:
    void Reset() {
        BlockStream::Reset();
        lost_ = 0;
    }

    void Update(const std::uint8_t* bytes, std::size_t count) {
        if (count >= blockSize - buffer_.Fill())
            lost_ += buffer_.Fill();
        BlockStream::Update(bytes, count);
    }

    // Pads with this byte, which tells Tiger1 from Tiger2, and leaves the digest in the state.
    void Finish(std::uint8_t padding) {
        const std::uint64_t counted = Length() - lost_;
        Pad(counted / blockSize, counted % blockSize, padding);
    }

    using BlockStream::StoreDigest;

  private:
    std::uint64_t lost_; // bytes that are not counted
};
