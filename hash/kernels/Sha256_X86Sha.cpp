// SPDX-License-Identifier: MIT
// SHA-256 with the processor's SHA instructions.
#include "hash/kernels/Sha256_X86ShaRounds.h"

namespace fyrn::kernels {
namespace {

// Four rounds at a time, from group to 15.
template <int group>
ISA_SHA ALWAYS_INLINE void RoundsFrom(State& state, __m128i w[4]) {
    FourRounds<group>(state, w);
    if constexpr (group < 15)
        RoundsFrom<group + 1>(state, w);
}

} // namespace

ISA_SHA void Sha256_Blocks_X86Sha(std::uint32_t words[8], const std::uint8_t* blocks, std::size_t count) {
    State state = LoadState(words);
    for (; count != 0; --count, blocks += 64) {
        const State before = state;
        __m128i w[4];
        LoadBlock(w, blocks);
        RoundsFrom<0>(state, w);
        Add(state, before);
    }
    StoreState(words, state);
}

} // namespace fyrn::kernels
