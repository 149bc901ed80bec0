// SPDX-License-Identifier: MIT
#pragma once

#include "hash/BlockBuffer.h"
#include "hash/KernelName.h"
#include "hash/LaneScheduler.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"
#include "hash/kernels/LaneSelect.h"
#include "hash/kernels/SkeinInitialValue.h"

#include <algorithm>
#include <array>
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

    static constexpr auto initialValue = kernels::SkeinInitialValue<words>();

    static kernels::SkeinBlocks* Chosen() {
        const kernels::KernelSet& chosen = kernels::Kernels();
        return words == 4 ? chosen.skein256 : words == 8 ? chosen.skein512 : chosen.skein1024;
    }
    void StartStage(std::uint64_t typeAndFlags);
    void Output(std::uint8_t* digest);

    LaneState state_;
    Buffer buffer_;
};

template <std::size_t words>
void SkeinStream<words>::Reset() {
    std::copy(initialValue.begin(), initialValue.end(), state_.chain);
    StartStage(kernels::skein_tweak::message);
    buffer_.Reset();
}

// Position 0, the first flag and the stage's own flags and type.
template <std::size_t words>
void SkeinStream<words>::StartStage(std::uint64_t typeAndFlags) {
    state_.tweak[0] = 0;
    state_.tweak[1] = kernels::skein_tweak::first | typeAndFlags;
}

template <std::size_t words>
void SkeinStream<words>::Absorb(const std::uint8_t* blocks, std::size_t count, std::size_t added) {
    Chosen()(state_.chain, state_.tweak, blocks, count, added);
}

template <std::size_t words>
void SkeinStream<words>::CompressLanes(const kernels::LaneCandidate<kernels::SkeinLanes>& kernel,
                                       LaneState* const states[], const std::uint8_t* const blocks[],
                                       std::size_t count) {
    std::uint64_t* chains[maxLanes];
    std::uint64_t* tweaks[maxLanes];
    for (std::size_t i = 0; i < kernel.lanes; ++i) {
        chains[i] = states[i]->chain;
        tweaks[i] = states[i]->tweak;
    }
    kernel.function(chains, tweaks, blocks, count, blockSize);
}

template <std::size_t words>
void SkeinStream<words>::Finish(std::uint8_t* digest) {
    state_.tweak[1] |= kernels::skein_tweak::final;
    buffer_.ZeroRest();
    Absorb(buffer_.Bytes(), 1, buffer_.Fill());
    buffer_.Reset();
    Output(digest);
}

// The output stage hashes the counter 0 and leaves the chaining value as it was.
template <std::size_t words>
void SkeinStream<words>::Output(std::uint8_t* digest) {
    const auto chain = std::to_array(state_.chain);
    StartStage(kernels::skein_tweak::final | kernels::skein_tweak::output);
    buffer_.ZeroRest();
    Absorb(buffer_.Bytes(), 1, sizeof(std::uint64_t));
    for (std::size_t i = 0; i < words; ++i)
        kernels::StoreLittle(digest + 8 * i, state_.chain[i]);
    std::copy(chain.begin(), chain.end(), state_.chain);
}

template <std::size_t words>
const char* SkeinStream<words>::Kernel() {
    const auto candidates = words == 4   ? kernels::KernelCandidates().skein256
                            : words == 8 ? kernels::KernelCandidates().skein512
                                         : kernels::KernelCandidates().skein1024;
    return KernelName(candidates, Chosen());
}

} // namespace fyrn::hash
