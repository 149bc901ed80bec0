// SPDX-License-Identifier: MIT
#include "hash/SkeinStream.h"

#include "hash/KernelName.h"
#include "hash/LaneScheduler.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"
#include "hash/kernels/SkeinInitialValue.h"

#include <algorithm>
#include <array>
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
    return KernelName(candidates, ChosenKernel<words>());
}

template class SkeinStream<4>;
template class SkeinStream<8>;
template class SkeinStream<16>;

} // namespace fyrn::hash
