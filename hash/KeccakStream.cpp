// SPDX-License-Identifier: MIT
#include "hash/KeccakStream.h"

#include "hash/KernelName.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"

#include <algorithm>
#include <iterator>

namespace fyrn::hash {

void KeccakStream::Reset() {
    std::fill(std::begin(state_), std::end(state_), 0);
    buffer_.Reset();
}

void KeccakStream::CompressAlone(const std::uint8_t* blocks, std::size_t count) {
    kernels::Kernels().keccak(state_, blocks, rate_ / 8, count);
}

void KeccakStream::AbsorbLastBlock() {
    std::uint8_t* const block = buffer_.Bytes();
    block[buffer_.Fill()] = padding_;
    block[rate_ - 1] |= 0x80;
    CompressAlone(block, 1);
    buffer_.Reset();
}

void KeccakStream::Pad() {
    buffer_.ZeroRest(rate_);
    AbsorbLastBlock();
}

void KeccakStream::Output(std::uint8_t* bytes, std::size_t count) const {
    std::uint8_t block[stateSize];
    for (std::size_t i = 0; i < std::size(state_); ++i)
        kernels::StoreLittle(block + 8 * i, state_[i]);
    std::copy_n(block, count, bytes);
}

void KeccakStream::Permute() {
    kernels::Kernels().keccak(state_, nullptr, 0, 1);
}

void KeccakStream::Finish(std::uint8_t* digest) {
    Pad();
    std::size_t left = digestSize_;
    for (; left > rate_; left -= rate_, digest += rate_) {
        Output(digest, rate_);
        Permute();
    }
    Output(digest, left);
}

const char* KeccakStream::Kernel() {
    return KernelName(kernels::KernelCandidates().keccak, kernels::Kernels().keccak);
}

} // namespace fyrn::hash
