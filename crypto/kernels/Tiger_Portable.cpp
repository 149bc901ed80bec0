// SPDX-License-Identifier: MIT
// Tiger in plain C++, the state in registers from the first block to the last.
#include "crypto/kernels/ByteOrder.h"
#include "crypto/kernels/Tiger_Round.h"

namespace kernels {

void Tiger_Blocks_Portable(std::uint64_t state[3], const std::uint8_t* blocks, std::size_t count) {
    using tiger::Word;
    const TigerBoxes& boxes = TigerSBoxes();
    Word a = state[0];
    Word b = state[1];
    Word c = state[2];
    for (; count != 0; --count, blocks += 64) {
        Word x[8];
        for (int i = 0; i < 8; ++i)
            x[i] = LoadLittle<Word>(blocks + 8 * i);
        tiger::Compress(boxes, a, b, c, x);
    }
    state[0] = a;
    state[1] = b;
    state[2] = c;
}

} // namespace kernels
