// SPDX-License-Identifier: MIT
// SHA-1 with the processor's SHA instructions.
#include "hash/kernels/Sha1_X86ShaRounds.h"

namespace fyrn::kernels {
namespace {

// Four rounds at a time, from group to 19.
template <int group>
ISA_SHA ALWAYS_INLINE void RoundsFrom(State& state, __m128i w[4]) {
    FourRounds<group>(state, w);
    if constexpr (group < 19)
        RoundsFrom<group + 1>(state, w);
}

} // namespace

ISA_SHA void Sha1_Blocks_X86Sha(std::uint32_t words[5], const std::uint8_t* blocks, std::size_t count) {
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
