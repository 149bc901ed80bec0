// SPDX-License-Identifier: MIT
// What all MD6 kernels share: the shifts of the 16 steps of a round, the distances of the taps, and the
// sequence of the round constants.
//
// A round extends the sequence of words a[0], a[1], ... by 16. Its steps do not depend on each other, since
// the nearest tap is 17 words back, so a kernel is free to take them in any order or side by side.
#pragma once

#include <cstdint>

// STEP(index, right shift, left shift), once for each step of a round.
#define MD6_ROUND(STEP)                                                                                      \
    STEP(0, 10, 11)                                                                                          \
    STEP(1, 5, 24)                                                                                           \
    STEP(2, 13, 9)                                                                                           \
    STEP(3, 10, 16)                                                                                          \
    STEP(4, 11, 15)                                                                                          \
    STEP(5, 12, 9)                                                                                           \
    STEP(6, 2, 27)                                                                                           \
    STEP(7, 7, 15)                                                                                           \
    STEP(8, 14, 6)                                                                                           \
    STEP(9, 15, 2)                                                                                           \
    STEP(10, 7, 29)                                                                                          \
    STEP(11, 13, 8)                                                                                          \
    STEP(12, 11, 15)                                                                                         \
    STEP(13, 7, 5)                                                                                           \
    STEP(14, 6, 31)                                                                                          \
    STEP(15, 12, 9)

namespace fyrn::kernels::md6 {

// Where the taps are, counted from the first of the 89 words that a step looks back on.
enum : int { tap89 = 0, tap67 = 22, tap31 = 58, tap21 = 68, tap18 = 71, tap17 = 72, newWord = 89 };

inline constexpr std::uint64_t firstRoundConstant = 0x0123456789abcdef;

constexpr std::uint64_t NextRoundConstant(std::uint64_t s) {
    return (s << 1 | s >> 63) ^ (s & 0x7311c2812425cfa0);
}

} // namespace fyrn::kernels::md6
