// SPDX-License-Identifier: MIT
#pragma once

#include "hash/BlockBuffer.h"
#include "hash/KernelName.h"
#include "hash/kernels/KernelSelect.h"
#include "hash/kernels/LaneSelect.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// BLAKE2b (RFC 7693): sequential, without a key, with a digest of 1 to 64 bytes.
class Blake2bStream {
  public:
    static constexpr std::size_t blockSize = 128, maxDigestSize = 64; // bytes

    explicit Blake2bStream(std::size_t digestSize) { Begin(digestSize); }

    // Begins a message, with a digest of another length or of the same.
    void Begin(std::size_t digestSize);
    void Reset() { Begin(digestSize_); }

    // Takes in bytes of the message. A block is compressed only when more follows it.
    void Update(const std::uint8_t* bytes, std::size_t count) { buffer_.Update(*this, bytes, count); }

    // Compresses the last block and writes the digest. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    // The same, with the whole chaining value, of maxDigestSize bytes, whose head is the digest.
    void FinishWhole(std::uint8_t* value);

    std::size_t DigestSize() const { return digestSize_; }
    bool IsFinished() const { return state_.flags[0] != 0; }

    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().blake2b, kernels::Kernels().blake2b);
    }

    // Update in steps (LaneScheduler.h).
    using LaneState = kernels::Blake2bState;
    static constexpr std::size_t laneStateSize = 1;
    static constexpr std::size_t BlockSize() { return blockSize; }
    static constexpr std::size_t WholeBlocks(std::size_t count) { return Buffer::WholeBlocks(count); }
    kernels::Blake2bState* State() { return &state_; }
    std::size_t Head(const std::uint8_t* bytes, std::size_t count) {
        return buffer_.Head(*this, bytes, count);
    }
    void Tail(const std::uint8_t* bytes, std::size_t count) { buffer_.Tail(bytes, count); }
    void Compressed(std::size_t) {}
    void CompressAlone(const std::uint8_t* blocks, std::size_t count);
    static kernels::LaneCandidates<kernels::Blake2bLanes> Lanes() { return kernels::LaneKernels().blake2b; }
    static void CompressLanes(const kernels::LaneCandidate<kernels::Blake2bLanes>& kernel,
                              kernels::Blake2bState* const states[], const std::uint8_t* const blocks[],
                              std::size_t count) {
        kernel.function(states, blocks, count, blockSize);
    }

  protected:
    kernels::Blake2bState state_;

  private:
    using Buffer = BlockBuffer<blockSize, FullBlock::keptBack>;

    std::size_t digestSize_;
    Buffer buffer_;
};

} // namespace fyrn::hash
