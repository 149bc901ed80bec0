// SPDX-License-Identifier: MIT
#include "hash/SkeinStream.h"

#include "hash/KernelName.h"
#include "hash/LaneScheduler.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"
#include "hash/kernels/SkeinInitialValue.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace fyrn::hash {
namespace {

template <std::size_t words>
kernels::SkeinBlocks* ChosenKernel() {
    const kernels::KernelSet& chosen = kernels::Kernels();
    return words == 4 ? chosen.skein256 : words == 8 ? chosen.skein512 : chosen.skein1024;
}

template <std::size_t words>
constexpr auto initialValue = kernels::SkeinInitialValue<words>();

} // namespace

template <std::size_t words>
void SkeinStream<words>::Reset() {
    std::copy(initialValue<words>.begin(), initialValue<words>.end(), state_.chain);
    StartStage(kernels::skein_tweak::message);
    fill_ = 0;
}

// Position 0, the first flag and the stage's own flags and type.
template <std::size_t words>
void SkeinStream<words>::StartStage(std::uint64_t typeAndFlags) {
    state_.tweak[0] = 0;
    state_.tweak[1] = kernels::skein_tweak::first | typeAndFlags;
}

template <std::size_t words>
void SkeinStream<words>::Absorb(const std::uint8_t* blocks, std::size_t count, std::size_t added) {
    ChosenKernel<words>()(state_.chain, state_.tweak, blocks, count, added);
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

// Completes the block in the buffer if more comes behind it.
template <std::size_t words>
std::size_t SkeinStream<words>::Head(const std::uint8_t* bytes, std::size_t count) {
    if (fill_ == 0)
        return 0;
    const std::size_t taken = std::min(count, blockSize - fill_);
    std::copy_n(bytes, taken, buffer_ + fill_);
    fill_ += taken;
    if (taken != count) {
        Absorb(buffer_, 1, blockSize);
        fill_ = 0;
    }
    return taken;
}

// Keeps up to a block. Nothing comes behind a head that took everything.
template <std::size_t words>
void SkeinStream<words>::Tail(const std::uint8_t* bytes, std::size_t count) {
    std::copy_n(bytes, count, buffer_ + fill_);
    fill_ += count;
}

template <std::size_t words>
void SkeinStream<words>::Update(const std::uint8_t* bytes, std::size_t count) {
    const std::size_t head = Head(bytes, count);
    const std::size_t whole = WholeBlocks(count - head);
    if (whole != 0)
        Absorb(bytes + head, whole, blockSize);
    const std::size_t tail = head + whole * blockSize;
    Tail(bytes + tail, count - tail);
}

// The output stage hashes the counter 0.
template <std::size_t words>
void SkeinStream<words>::Finish(std::uint8_t* digest) {
    state_.tweak[1] |= kernels::skein_tweak::final;
    std::memset(buffer_ + fill_, 0, blockSize - fill_);
    Absorb(buffer_, 1, fill_);
    StartStage(kernels::skein_tweak::final | kernels::skein_tweak::output);
    std::memset(buffer_, 0, blockSize);
    Absorb(buffer_, 1, sizeof(std::uint64_t));
    for (std::size_t i = 0; i < words; ++i)
        kernels::StoreLittle(digest + 8 * i, state_.chain[i]);
}

template <std::size_t words>
const char* SkeinStream<words>::Kernel() {
    const auto candidates = words == 4   ? kernels::KernelCandidates().skein256
                            : words == 8 ? kernels::KernelCandidates().skein512
                                         : kernels::KernelCandidates().skein1024;
    return KernelName(candidates, ChosenKernel<words>());
}

template class SkeinStream<4>;
template class SkeinStream<8>;
template class SkeinStream<16>;

} // namespace fyrn::hash
