// SPDX-License-Identifier: MIT
#include "hash/SkeinStream.h"

#include "hash/KernelName.h"
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
    std::copy(initialValue<words>.begin(), initialValue<words>.end(), chain_);
    StartStage(kernels::skein_tweak::message);
    fill_ = 0;
}

// Position 0, the first flag and the stage's own flags and type.
template <std::size_t words>
void SkeinStream<words>::StartStage(std::uint64_t typeAndFlags) {
    tweak_[0] = 0;
    tweak_[1] = kernels::skein_tweak::first | typeAndFlags;
}

template <std::size_t words>
void SkeinStream<words>::Absorb(const std::uint8_t* blocks, std::size_t count, std::size_t added) {
    ChosenKernel<words>()(chain_, tweak_, blocks, count, added);
}

template <std::size_t words>
void SkeinStream<words>::Update(const std::uint8_t* bytes, std::size_t count) {
    if (count > blockSize - fill_) {
        if (fill_ != 0) {
            const std::size_t room = blockSize - fill_;
            std::copy_n(bytes, room, buffer_ + fill_);
            Absorb(buffer_, 1, blockSize);
            bytes += room;
            count -= room;
            fill_ = 0;
        }
        const std::size_t whole = (count - 1) / blockSize; // the last block stays back
        if (whole != 0)
            Absorb(bytes, whole, blockSize);
        bytes += whole * blockSize;
        count -= whole * blockSize;
    }
    std::copy_n(bytes, count, buffer_ + fill_);
    fill_ += count;
}

// The output stage hashes the counter 0.
template <std::size_t words>
void SkeinStream<words>::Finish(std::uint8_t* digest) {
    tweak_[1] |= kernels::skein_tweak::final;
    std::memset(buffer_ + fill_, 0, blockSize - fill_);
    Absorb(buffer_, 1, fill_);
    StartStage(kernels::skein_tweak::final | kernels::skein_tweak::output);
    std::memset(buffer_, 0, blockSize);
    Absorb(buffer_, 1, sizeof(std::uint64_t));
    for (std::size_t i = 0; i < words; ++i)
        kernels::StoreLittle(digest + 8 * i, chain_[i]);
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
