// SPDX-License-Identifier: MIT
// Skein's initial chaining values, derived at compile time from the configuration block.
#pragma once

#include "hash/kernels/Skein.h"
#include "hash/kernels/SkeinThreefish.h"

#include <array>

namespace fyrn::kernels {

// What the configuration block leaves for simple hashing: no key, no tree, an output as long as the state.
// The block has 32 bytes (identifier "SHA3", version 1, output length in bits, tree parameters 0).
template <std::size_t words>
constexpr std::array<std::uint64_t, words> SkeinInitialValue() {
    constexpr std::uint64_t configuration[words] = {0x0000'0001'3341'4853, 64 * words};
    constexpr std::uint64_t zeroKey[words] = {};
    constexpr std::uint64_t tweak[2] = {32,
                                        skein_tweak::first | skein_tweak::final | skein_tweak::configuration};
    std::uint64_t x[words] = {configuration[0], configuration[1]};
    threefish::Encrypt(x, threefish::Expand<words>(zeroKey, tweak));
    std::array<std::uint64_t, words> chain{};
    for (std::size_t i = 0; i < words; ++i)
        chain[i] = x[i] ^ configuration[i];
    return chain;
}

} // namespace fyrn::kernels
