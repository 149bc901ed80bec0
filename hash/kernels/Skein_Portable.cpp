// SPDX-License-Identifier: MIT
// Skein's three block functions in plain C++.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Skein.h"
#include "hash/kernels/SkeinThreefish.h"

namespace fyrn::kernels {
namespace {

using threefish::Word;

// Encrypts each block under chaining value and tweak; result and block together are the next chaining value.
template <std::size_t words>
[[gnu::always_inline]] inline void Absorb(Word* chain, Word tweak[2], const std::uint8_t* blocks,
                                          std::size_t count, Word added) {
    for (; count != 0; --count, blocks += 8 * words) {
        tweak[0] += added;
        const auto schedule = threefish::Expand<words>(chain, tweak);
        Word x[words];
        [&]<std::size_t... i>(std::index_sequence<i...>) __attribute__((always_inline)) {
            ((x[i] = LoadLittle<Word>(blocks + 8 * i)), ...);
            threefish::Encrypt(x, schedule);
            ((chain[i] = x[i] ^ LoadLittle<Word>(blocks + 8 * i)), ...);
        }
        (std::make_index_sequence<words>());
        tweak[1] &= ~skein_tweak::first;
    }
}

} // namespace

void Skein256_Blocks_Portable(Word* chain, Word tweak[2], const std::uint8_t* blocks, std::size_t count,
                              Word added) {
    Absorb<4>(chain, tweak, blocks, count, added);
}

void Skein512_Blocks_Portable(Word* chain, Word tweak[2], const std::uint8_t* blocks, std::size_t count,
                              Word added) {
    Absorb<8>(chain, tweak, blocks, count, added);
}

void Skein1024_Blocks_Portable(Word* chain, Word tweak[2], const std::uint8_t* blocks, std::size_t count,
                               Word added) {
    Absorb<16>(chain, tweak, blocks, count, added);
}

} // namespace fyrn::kernels
