// SPDX-License-Identifier: MIT
#pragma once

#include "hash/BlockBuffer.h"
#include "hash/KernelName.h"
#include "hash/kernels/KernelSelect.h"
#include "hash/kernels/LaneSelect.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// The Keccak sponge: SHA-3 and SHAKE (FIPS 202), and Keccak as it was submitted to the SHA-3 competition.
class KeccakStream {
  public:
    // The first byte of the padding, which tells the functions apart.
    static constexpr std::uint8_t keccak = 0x01, sha3 = 0x06, shake = 0x1f;
    static constexpr std::size_t stateSize = 200; // bytes

    // `rate` is the size of a block in bytes, a multiple of 8 up to stateSize.
    KeccakStream(std::size_t rate, std::uint8_t padding, std::size_t digestSize)
        : rate_(rate), digestSize_(digestSize), padding_(padding) {
        Reset();
    }

    // Begins a message.
    void Reset();

    // Takes in bytes of the message.
    void Update(const std::uint8_t* bytes, std::size_t count) { buffer_.Update(*this, bytes, count, rate_); }

    // Pads the message and writes the digest. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    // The steps of Finish, for output of a length that is not known before. Output copies the first bytes of a block of
    // it, at most `rate`, and Permute goes on to the next.
    void Pad();
    void Output(std::uint8_t* bytes, std::size_t count) const;
    void Permute();

    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().keccak, kernels::Kernels().keccak);
    }

    // Update in steps (LaneScheduler.h).
    using LaneState = std::uint64_t;
    static constexpr std::size_t laneStateSize = stateSize / 8;
    std::size_t BlockSize() const { return rate_; }
    std::size_t WholeBlocks(std::size_t count) const { return Buffer::WholeBlocks(count, rate_); }
    std::uint64_t* State() { return state_; }
    std::size_t Head(const std::uint8_t* bytes, std::size_t count) {
        return buffer_.Head(*this, bytes, count, rate_);
    }
    void Tail(const std::uint8_t* bytes, std::size_t count) { buffer_.Tail(bytes, count); }
    void Compressed(std::size_t) {}
    void CompressAlone(const std::uint8_t* blocks, std::size_t count);
    static kernels::LaneCandidates<kernels::KeccakLanes> Lanes() { return kernels::LaneKernels().keccak; }
    void CompressLanes(const kernels::LaneCandidate<kernels::KeccakLanes>& kernel,
                       std::uint64_t* const states[], const std::uint8_t* const blocks[],
                       std::size_t count) const {
        kernel.function(states, blocks, rate_ / 8, count);
    }

  protected:
    using Buffer = BlockBuffer<stateSize, FullBlock::compressed>;

    // Adds the padding to the block in the buffer, which is to hold zeros behind the message, and absorbs it.
    void AbsorbLastBlock();

    Buffer buffer_;

  private:
    std::uint64_t state_[stateSize / 8];
    std::size_t rate_;
    std::size_t digestSize_;
    std::uint8_t padding_;
};

} // namespace fyrn::hash
