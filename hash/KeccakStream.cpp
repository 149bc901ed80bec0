// SPDX-License-Identifier: MIT
#include "hash/KeccakStream.h"

#include "hash/KernelName.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace fyrn::hash {

void KeccakStream::Reset() {
    std::fill(std::begin(state_), std::end(state_), 0);
    fill_ = 0;
}

void KeccakStream::Absorb(const std::uint8_t* blocks, std::size_t count) {
    kernels::Kernels().keccak(state_, blocks, rate_ / 8, count);
}

// Completes the block in the buffer, as far as the bytes go.
std::size_t KeccakStream::Head(const std::uint8_t* bytes, std::size_t count) {
    if (fill_ == 0)
        return 0;
    const std::size_t taken = std::min(count, rate_ - fill_);
    std::copy_n(bytes, taken, buffer_ + fill_);
    fill_ += taken;
    if (fill_ == rate_) {
        Absorb(buffer_, 1);
        fill_ = 0;
    }
    return taken;
}

// Keeps less than a block. Nothing comes behind a head that took everything.
void KeccakStream::Tail(const std::uint8_t* bytes, std::size_t count) {
    std::copy_n(bytes, count, buffer_ + fill_);
    fill_ += count;
}

void KeccakStream::Update(const std::uint8_t* bytes, std::size_t count) {
    const std::size_t head = Head(bytes, count);
    const std::size_t whole = WholeBlocks(count - head);
    if (whole != 0)
        Absorb(bytes + head, whole);
    const std::size_t tail = head + whole * rate_;
    Tail(bytes + tail, count - tail);
}

void KeccakStream::Finish(std::uint8_t* digest) {
    std::memset(buffer_ + fill_, 0, rate_ - fill_);
    buffer_[fill_] = padding_;
    buffer_[rate_ - 1] |= 0x80;
    Absorb(buffer_, 1);
    for (std::size_t left = digestSize_;;) {
        std::uint8_t block[stateSize];
        for (std::size_t i = 0; i < std::size(state_); ++i)
            kernels::StoreLittle(block + 8 * i, state_[i]);
        const std::size_t piece = std::min(left, rate_);
        digest = std::copy_n(block, piece, digest);
        left -= piece;
        if (left == 0)
            return;
        kernels::Kernels().keccak(state_, nullptr, 0, 1);
    }
}

const char* KeccakStream::Kernel() {
    return KernelName(kernels::KernelCandidates().keccak, kernels::Kernels().keccak);
}

} // namespace fyrn::hash
