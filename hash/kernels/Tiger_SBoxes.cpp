// SPDX-License-Identifier: MIT
// Tiger's S-boxes, made as their authors made them: each of the eight byte columns of each box starts as
// the identity, and five times over every entry's bytes change places with entries chosen by the state of
// Tiger itself, which hashes a sentence over and over with the boxes as they are at that moment.
#include "hash/kernels/Tiger_Round.h"

#include <algorithm>

namespace fyrn::kernels {
namespace {

using tiger::Word;

constexpr char sentence[] = "Tiger - A Fast New Hash Function, by Ross Anderson and Eli Biham";
constexpr int generatorPasses = 5;

void CompressSentence(const TigerBoxes& boxes, Word state[3]) {
    Word x[8];
    for (int i = 0; i < 8; ++i)
        x[i] = LoadLittle<Word>(reinterpret_cast<const std::uint8_t*>(sentence) + 8 * i);
    tiger::Compress(boxes, tiger::ShiftedBytes{}, state[0], state[1], state[2], x);
}

// Exchanges the bytes of one entry with those of the entries that the bytes of `choice` name.
void SwapBytes(Word box[256], int entry, Word choice) {
    for (int column = 0; column < 8; ++column) {
        Word& one = box[entry];
        Word& other = box[choice >> 8 * column & 0xff];
        const Word difference = (one ^ other) & Word{0xff} << 8 * column;
        one ^= difference;
        other ^= difference;
    }
}

TigerBoxes Generate() {
    TigerBoxes boxes;
    for (auto& box : boxes.box)
        for (Word entry = 0; entry < 256; ++entry)
            box[entry] = entry * 0x0101010101010101;

    Word state[3] = {0x0123456789abcdef, 0xfedcba9876543210, 0xf096a5b4c3b2e187};
    int used = 2;
    for (int pass = 0; pass < generatorPasses; ++pass)
        for (int entry = 0; entry < 256; ++entry)
            for (auto& box : boxes.box) {
                if (++used == 3) {
                    used = 0;
                    CompressSentence(boxes, state);
                }
                SwapBytes(box, entry, state[used]);
            }
    return boxes;
}

} // namespace

const TigerBoxes& TigerSBoxes() {
    static const TigerBoxes boxes = Generate();
    return boxes;
}

} // namespace fyrn::kernels
