// SPDX-License-Identifier: MIT
// SHA-1 of two messages with the processor's SHA instructions: four rounds of one begin while those of the other are
// on their way.
#include "hash/kernels/Sha1_X86ShaRounds.h"

namespace fyrn::kernels {
namespace {

// Four rounds of each message at a time, from group to 19.
template <int group>
ISA_SHA ALWAYS_INLINE void RoundsFrom(State& first, __m128i w1[4], State& second, __m128i w2[4]) {
    FourRounds<group>(first, w1);
    FourRounds<group>(second, w2);
    if constexpr (group < 19)
        RoundsFrom<group + 1>(first, w1, second, w2);
}

} // namespace

ISA_SHA void Sha1_Lanes_X86Shax2(std::uint32_t* const states[], const std::uint8_t* const blocks[],
                                 std::size_t count) {
    State first = LoadState(states[0]);
    State second = LoadState(states[1]);
    for (std::size_t offset = 0; offset != 64 * count; offset += 64) {
        const State beforeFirst = first;
        const State beforeSecond = second;
        __m128i w1[4];
        __m128i w2[4];
        LoadBlock(w1, blocks[0] + offset);
        LoadBlock(w2, blocks[1] + offset);
        RoundsFrom<0>(first, w1, second, w2);
        Add(first, beforeFirst);
        Add(second, beforeSecond);
    }
    StoreState(states[0], first);
    StoreState(states[1], second);
}

} // namespace fyrn::kernels
