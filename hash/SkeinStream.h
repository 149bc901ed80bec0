// SPDX-License-Identifier: MIT
#pragma once

#include "hash/BlockBuffer.h"
#include "hash/kernels/LaneSelect.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// Skein 1.3 with a state of 4, 8 or 16 words of 64 bits, and a digest as long as the state.
template <std::size_t words>
class SkeinStream {
  public:
    static constexpr std::size_t blockSize = 8 * words, digestSize = blockSize; // bytes

    // Begins a message.
    void Reset();

    // Takes in bytes of the message. The last block is always kept back.
    void Update(const std::uint8_t* bytes, std::size_t count) { buffer_.Update(*this, bytes, count); }

    // Compresses the last block and writes the digest. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    // Compresses whole blocks at once, each of which adds `added` bytes to the position. Update and Finish do so with
    // blocks of the message.
    void Absorb(const std::uint8_t* blocks, std::size_t count, std::size_t added);

    static const char* Kernel();

    // Update in steps (LaneScheduler.h).
    struct LaneState {
        std::uint64_t chain[words];
        std::uint64_t tweak[2]; // the position, and the stage
    };
    static constexpr std::size_t laneStateSize = 1;
    static constexpr std::size_t BlockSize() { return blockSize; }
    static constexpr std::size_t WholeBlocks(std::size_t count) { return Buffer::WholeBlocks(count); }
    LaneState* State() { return &state_; }
    std::size_t Head(const std::uint8_t* bytes, std::size_t count) {
        return buffer_.Head(*this, bytes, count);
    }
    void Tail(const std::uint8_t* bytes, std::size_t count) { buffer_.Tail(bytes, count); }
    void Compressed(std::size_t) {}
    void CompressAlone(const std::uint8_t* blocks, std::size_t count) { Absorb(blocks, count, blockSize); }
    static kernels::LaneCandidates<kernels::SkeinLanes> Lanes() {
        const kernels::LaneTable& table = kernels::LaneKernels();
        return words == 4 ? table.skein256 : words == 8 ? table.skein512 : table.skein1024;
    }
    static void CompressLanes(const kernels::LaneCandidate<kernels::SkeinLanes>& kernel,
                              LaneState* const states[], const std::uint8_t* const blocks[],
                              std::size_t count);

  private:
    using Buffer = BlockBuffer<blockSize, FullBlock::keptBack>;

    void StartStage(std::uint64_t typeAndFlags);
    void Output(std::uint8_t* digest);

    LaneState state_;
    Buffer buffer_;
};

extern template class SkeinStream<4>;
extern template class SkeinStream<8>;
extern template class SkeinStream<16>;

} // namespace fyrn::hash
