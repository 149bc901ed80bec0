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

void Blake2bStream::CompressAlone(const std::uint8_t* blocks, std::size_t count) {
    kernels::Kernels().blake2b(state_, blocks, count, blockSize);
}

// Completes the block in the buffer if more comes behind it.
std::size_t Blake2bStream::Head(const std::uint8_t* bytes, std::size_t count) {
    if (fill_ == 0)
        return 0;
    const std::size_t taken = std::min(count, blockSize - fill_);
    std::copy_n(bytes, taken, buffer_ + fill_);
    fill_ += taken;
    if (taken != count) {
        CompressAlone(buffer_, 1);
        fill_ = 0;
    }
    return taken;
}

// Keeps up to a block. Nothing comes behind a head that took everything.
void Blake2bStream::Tail(const std::uint8_t* bytes, std::size_t count) {
    std::copy_n(bytes, count, buffer_ + fill_);
    fill_ += count;
}

void Blake2bStream::Update(const std::uint8_t* bytes, std::size_t count) {
    const std::size_t head = Head(bytes, count);
    const std::size_t whole = WholeBlocks(count - head);
    if (whole != 0)
        CompressAlone(bytes + head, whole);
    const std::size_t tail = head + whole * blockSize;
    Tail(bytes + tail, count - tail);
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
