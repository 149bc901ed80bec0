// SPDX-License-Identifier: MIT
#include "tests/reference/Tiger.h"

#include <string_view>
#include <utility>

namespace reference {
namespace {

using Words = std::array<std::uint64_t, 8>;
using Entry = std::array<std::uint8_t, 8>; // of a box, low-order byte first
using Boxes = std::array<std::array<Entry, 256>, 4>;

std::uint8_t ByteOf(std::uint64_t word, std::size_t index) {
    return static_cast<std::uint8_t>(word >> (8 * index));
}

std::uint64_t WordOf(const std::uint8_t* bytes) {
    std::uint64_t word = 0;
    for (std::size_t i = 8; i-- > 0;)
        word = word << 8 | bytes[i];
    return word;
}

std::uint64_t LookUp(const Boxes& boxes, std::size_t box, std::uint64_t word, std::size_t byte) {
    return WordOf(boxes[box][ByteOf(word, byte)].data());
}

// round(a, b, c, x, mul), where a, b and c are the registers from `first` on.
void Round(const Boxes& boxes, TigerState& state, std::size_t first, std::uint64_t x,
           std::uint64_t multiplier) {
    std::uint64_t& a = state[first % 3];
    std::uint64_t& b = state[(first + 1) % 3];
    std::uint64_t& c = state[(first + 2) % 3];
    c ^= x;
    a -= LookUp(boxes, 0, c, 0) ^ LookUp(boxes, 1, c, 2) ^ LookUp(boxes, 2, c, 4) ^ LookUp(boxes, 3, c, 6);
    b += LookUp(boxes, 3, c, 1) ^ LookUp(boxes, 2, c, 3) ^ LookUp(boxes, 1, c, 5) ^ LookUp(boxes, 0, c, 7);
    b *= multiplier;
}

void KeySchedule(Words& x) {
    x[0] -= x[7] ^ 0xA5A5A5A5A5A5A5A5;
    x[1] ^= x[0];
    x[2] += x[1];
    x[3] -= x[2] ^ ((~x[1]) << 19);
    x[4] ^= x[3];
    x[5] += x[4];
    x[6] -= x[5] ^ ((~x[4]) >> 23);
    x[7] ^= x[6];
    x[0] += x[7];
    x[1] -= x[0] ^ ((~x[7]) << 19);
    x[2] ^= x[1];
    x[3] += x[2];
    x[4] -= x[3] ^ ((~x[2]) >> 23);
    x[5] ^= x[4];
    x[6] += x[5];
    x[7] -= x[6] ^ 0x0123456789ABCDEF;
}

void Compress(const Boxes& boxes, TigerState& state, const std::uint8_t* block) {
    Words x;
    for (std::size_t i = 0; i < 8; ++i)
        x[i] = WordOf(block + 8 * i);
    const TigerState saved = state;
    for (std::size_t pass = 0; pass < 3; ++pass) {
        if (pass != 0)
            KeySchedule(x);
        // Pass 1 starts with a, b, c, pass 2 with c, a, b, pass 3 with b, c, a.
        for (std::size_t i = 0; i < 8; ++i)
            Round(boxes, state, 3 - pass + i, x[i], 5 + 2 * pass);
    }
    state[0] ^= saved[0];
    state[1] -= saved[1];
    state[2] += saved[2];
}

// The authors' table generator.
Boxes Generate(std::string_view text, int passes) {
    Boxes boxes;
    for (auto& box : boxes)
        for (std::size_t i = 0; i < 256; ++i)
            box[i].fill(static_cast<std::uint8_t>(i));

    TigerState state = tigerInitialState;
    std::size_t word = 2;
    for (int pass = 0; pass < passes; ++pass)
        for (std::size_t i = 0; i < 256; ++i)
            for (auto& box : boxes) {
                word = (word + 1) % 3;
                if (word == 0)
                    Compress(boxes, state, reinterpret_cast<const std::uint8_t*>(text.data()));
                for (std::size_t column = 0; column < 8; ++column)
                    std::swap(box[i][column], box[ByteOf(state[word], column)][column]);
            }
    return boxes;
}

const Boxes& StandardBoxes() {
    static const Boxes boxes =
        Generate("Tiger - A Fast New Hash Function, by Ross Anderson and Eli Biham", 5);
    return boxes;
}

} // namespace

std::uint64_t TigerSBox(std::size_t box, std::size_t index) {
    return WordOf(StandardBoxes()[box][index].data());
}

void TigerCompress(TigerState& state, const std::uint8_t* block) {
    Compress(StandardBoxes(), state, block);
}

helpers::Bytes Tiger(std::span<const std::uint8_t> message, std::uint8_t padding,
                     std::uint64_t countedBytes) {
    helpers::Bytes padded(message.begin(), message.end());
    padded.push_back(padding);
    while (padded.size() % 64 != 56)
        padded.push_back(0);
    for (std::size_t i = 0; i < 8; ++i)
        padded.push_back(ByteOf(8 * countedBytes, i));

    TigerState state = tigerInitialState;
    for (std::size_t i = 0; i < padded.size(); i += 64)
        TigerCompress(state, padded.data() + i);
    helpers::Bytes digest;
    for (const std::uint64_t word : state)
        for (std::size_t i = 0; i < 8; ++i)
            digest.push_back(ByteOf(word, i));
    return digest;
}

} // namespace reference
