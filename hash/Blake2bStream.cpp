// SPDX-License-Identifier: MIT
#include "hash/Blake2bStream.h"

#include "hash/kernels/ByteOrder.h"

#include <algorithm>
#include <iterator>

namespace fyrn::hash {

// The parameter block for sequential hashing: digest length, key length 0, fanout 1, depth 1; the rest is 0.
void Blake2bStream::Begin(std::size_t digestSize) {
    digestSize_ = digestSize;
    state_ = {};
    std::copy(std::begin(kernels::blake2bInitialValues), std::end(kernels::blake2bInitialValues),
              state_.chain);
    state_.chain[0] ^= 0x0101'0000 ^ digestSize_;
    buffer_.Reset();
}

void Blake2bStream::CompressAlone(const std::uint8_t* blocks, std::size_t count) {
    kernels::Kernels().blake2b(state_, blocks, count, blockSize);
}

void Blake2bStream::FinishWhole(std::uint8_t* value) {
    state_.flags[0] = ~std::uint64_t{0};
    buffer_.ZeroRest();
    kernels::Kernels().blake2b(state_, buffer_.Bytes(), 1, buffer_.Fill());
    for (std::size_t i = 0; i < std::size(state_.chain); ++i)
        kernels::StoreLittle(value + 8 * i, state_.chain[i]);
}

void Blake2bStream::Finish(std::uint8_t* digest) {
    std::uint8_t value[maxDigestSize];
    FinishWhole(value);
    std::copy_n(value, digestSize_, digest);
}

} // namespace fyrn::hash
