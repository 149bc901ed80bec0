// SPDX-License-Identifier: MIT
#include "hash/Blake2bStream.h"

#include "hash/KernelName.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace fyrn::hash {

// The parameter block for sequential hashing: digest length, key length 0, fanout 1, depth 1; the rest is 0.
void Blake2bStream::Reset() {
    state_ = {};
    std::copy(std::begin(kernels::blake2bInitialValues), std::end(kernels::blake2bInitialValues),
              state_.chain);
    state_.chain[0] ^= 0x0101'0000 ^ digestSize_;
    fill_ = 0;
}

void Blake2bStream::Update(const std::uint8_t* bytes, std::size_t count) {
    if (count > blockSize - fill_) {
        const auto compress = kernels::Kernels().blake2b;
        if (fill_ != 0) {
            const std::size_t room = blockSize - fill_;
            std::copy_n(bytes, room, buffer_ + fill_);
            compress(state_, buffer_, 1, blockSize);
            bytes += room;
            count -= room;
            fill_ = 0;
        }
        const std::size_t whole = (count - 1) / blockSize; // the last block stays back
        if (whole != 0)
            compress(state_, bytes, whole, blockSize);
        bytes += whole * blockSize;
        count -= whole * blockSize;
    }
    std::copy_n(bytes, count, buffer_ + fill_);
    fill_ += count;
}

void Blake2bStream::Finish(std::uint8_t* digest) {
    state_.flags[0] = ~std::uint64_t{0};
    std::memset(buffer_ + fill_, 0, blockSize - fill_);
    kernels::Kernels().blake2b(state_, buffer_, 1, fill_);
    std::uint8_t bytes[maxDigestSize];
    for (std::size_t i = 0; i < std::size(state_.chain); ++i)
        kernels::StoreLittle(bytes + 8 * i, state_.chain[i]);
    std::copy_n(bytes, digestSize_, digest);
}

const char* Blake2bStream::Kernel() {
    return KernelName(kernels::KernelCandidates().blake2b, kernels::Kernels().blake2b);
}

} // namespace fyrn::hash
