// SPDX-License-Identifier: MIT
// MD6 in plain C++, one node after the other. The words of the feedback sequence are laid down in a
// straight line, 16 to a round at fixed distances, and the last 89 move back to the start when the line is
// full: short enough for the first-level cache, long enough that the move does not count.
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/Md6.h"
#include "hash/kernels/Md6_Round.h"

#include <algorithm>

namespace fyrn::kernels {
namespace {

using Word = std::uint64_t;
using namespace md6;

constexpr int roundsPerLine = 32;
constexpr int lineWords = newWord + 16 * roundsPerLine;

#define STEP(i, right, left)                                                                                 \
    {                                                                                                        \
        Word x = s ^ a[i + tap89] ^ a[i + tap17];                                                            \
        x ^= (a[i + tap18] & a[i + tap21]) ^ (a[i + tap31] & a[i + tap67]);                                  \
        x ^= x >> right;                                                                                     \
        a[i + newWord] = x ^ x << left;                                                                      \
    }

// Runs all rounds and returns the last 16 words.
const Word* RunRounds(Word line[lineWords], int rounds) {
    Word s = firstRoundConstant;
    Word* a = line;
    for (; rounds != 0; --rounds, a += 16) {
        if (a == line + 16 * roundsPerLine) {
            std::copy_n(a, +newWord, line);
            a = line;
        }
        MD6_ROUND(STEP)
        s = NextRoundConstant(s);
    }
    return a + newWord - 16;
}

} // namespace

void Md6_Nodes_Portable(std::uint8_t* chainingValues, const std::uint8_t* nodes, std::size_t count,
                        const Md6Batch& batch) {
    Word line[lineWords];
    for (std::size_t node = 0; node < count; ++node) {
        std::copy_n(batch.prefix, md6PrefixWords, line);
        line[md6PrefixWords] = batch.firstId + node;
        line[md6PrefixWords + 1] = node + 1 == count ? batch.lastControl : batch.control;
        for (std::size_t i = md6PrefixWords + 2; i < md6InputWords; ++i, nodes += sizeof(Word))
            line[i] = LoadBig<Word>(nodes);

        const Word* const result = RunRounds(line, batch.rounds);
        for (std::size_t i = 0; i < 16; ++i, chainingValues += sizeof(Word))
            StoreBig(chainingValues, result[i]);
    }
}

} // namespace fyrn::kernels
