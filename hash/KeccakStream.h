// SPDX-License-Identifier: MIT
#pragma once

#include "hash/kernels/LaneSelect.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// The Keccak sponge: SHA-3 and SHAKE (FIPS 202), and Keccak as it was submitted to the SHA-3 competition.
class KeccakStream {
  public:
    // The first byte of the padding, which tells the functions apart.
    static constexpr std::uint8_t keccak = 0x01, sha3 = 0x06, shake = 0x1f;
    static constexpr std::size_t stateSize = 200, maxRate = 168; // bytes

    // `rate` is the size of a block in bytes, a multiple of 8 up to maxRate.
    KeccakStream(std::size_t rate, std::uint8_t padding, std::size_t digestSize)
        : rate_(rate), digestSize_(digestSize), padding_(padding) {
        Reset();
    }

    // Begins a message.
    void Reset();

    // Takes in bytes of the message.
    void Update(const std::uint8_t* bytes, std::size_t count);

    // Pads the message and writes the digest. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    static const char* Kernel();

    // Update in steps (LaneScheduler.h).
    using LaneState = std::uint64_t;
    static constexpr std::size_t laneStateSize = stateSize / 8;
    std::size_t BlockSize() const { return rate_; }
    std::size_t WholeBlocks(std::size_t count) const { return count / rate_; }
    std::uint64_t* State() { return state_; }
    std::size_t Head(const std::uint8_t* bytes, std::size_t count);
    void Tail(const std::uint8_t* bytes, std::size_t count);
    void Compressed(std::size_t) {}
    void CompressAlone(const std::uint8_t* blocks, std::size_t count) { Absorb(blocks, count); }
    static kernels::LaneCandidates<kernels::KeccakLanes> Lanes() { return kernels::LaneKernels().keccak; }
    void CompressLanes(const kernels::LaneCandidate<kernels::KeccakLanes>& kernel,
                       std::uint64_t* const states[], const std::uint8_t* const blocks[],
                       std::size_t count) const {
        kernel.function(states, blocks, rate_ / 8, count);
    }

  private:
    void Absorb(const std::uint8_t* blocks, std::size_t count);

    std::uint64_t state_[stateSize / 8];
    std::size_t rate_;
    std::size_t digestSize_;
    std::size_t fill_; // bytes in the buffer, 0 to rate_ - 1
    std::uint8_t padding_;
    std::uint8_t buffer_[maxRate];
};

} // namespace fyrn::hash
