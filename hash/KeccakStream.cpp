// SPDX-License-Identifier: MIT
#include "hash/KeccakStream.h"

#include "hash/kernels/ByteOrder.h"

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
    std::size_t at = 0;
    for (; at + 8 <= count; at += 8)
        kernels::StoreLittle(bytes + at, state_[at / 8]);
    for (; at < count; ++at)
        bytes[at] = static_cast<std::uint8_t>(state_[at / 8] >> 8 * (at % 8));
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

} // namespace fyrn::hash
