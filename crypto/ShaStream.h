// SPDX-License-Identifier: MIT
// SHA-1 and SHA-2 as fyrn has always computed them: with narrow block counts, and without traces on the stack.
#pragma once

#include "crypto/SecureWipe.h"
#include "hash/BlockAlgorithms.h"
#include "hash/BlockStream.h"

#include <cstddef>
#include <cstdint>

namespace sha {

// Clears the stack below the caller, where a compression has left words of the message: 128 bytes for every
// 4 of `count`, far more than a compression uses. Never inlined, so that its frame lies where the
// compression's was.
template <unsigned int count>
__attribute__((noinline, no_sanitize("address"))) void BurnStack() {
    unsigned char area[count / 4 * 128];
    SecureWipe(area, sizeof area);
}

// Burns the stack behind whatever could have compressed. The blocks are counted by a BlockCount: where it has 32 bits, the
// count wraps at 2^32 blocks (256 GiB), and the length that is hashed at the end with it. Digests of such files have
// always been these.
template <class Algorithm, class BlockCount, unsigned int burnCount>
class Stream : public fyrn::hash::BlockStream<Algorithm> {
  public:
    void Update(const std::uint8_t* bytes, std::size_t count) {
        Pure::Update(bytes, count);
        BurnStack<burnCount>();
    }

    void Finish(std::uint8_t* digest) {
        this->Pad(static_cast<BlockCount>(this->blocks_), this->buffer_.Fill());
        this->StoreDigest(digest);
        BurnStack<burnCount>();
    }

  private:
    using Pure = fyrn::hash::BlockStream<Algorithm>;
};

using Sha1Stream = Stream<fyrn::hash::Sha1, std::uint32_t, 104>;
using Sha256Stream = Stream<fyrn::hash::Sha256, std::uint32_t, 328>;
using Sha384Stream = Stream<fyrn::hash::Sha384, std::uint64_t, 768>;
using Sha512Stream = Stream<fyrn::hash::Sha512, std::uint64_t, 768>;

} // namespace sha
