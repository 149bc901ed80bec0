// SPDX-License-Identifier: MIT
// Tiger of two or three messages in plain C++, one round of each after the other. A round waits for the look-ups of the
// one before, some eleven cycles, which the rounds of the other messages fill.
#include "hash/kernels/Tiger_Round.h"

namespace fyrn::kernels {
namespace {

using tiger::ShiftedBytes;
using tiger::Word;

struct Message {
    Word a, b, c;
    Word x[8];
};

template <unsigned int multiplier, Word Message::*a, Word Message::*b, Word Message::*c, int i,
          std::size_t lanes>
ALWAYS_INLINE void Round(const TigerBoxes& boxes, Message (&m)[lanes]) {
    tiger::Round<multiplier>(boxes, ShiftedBytes{}, m[0].*a, m[0].*b, m[0].*c, m[0].x[i]);
    tiger::Round<multiplier>(boxes, ShiftedBytes{}, m[1].*a, m[1].*b, m[1].*c, m[1].x[i]);
    if constexpr (lanes == 3)
        tiger::Round<multiplier>(boxes, ShiftedBytes{}, m[2].*a, m[2].*b, m[2].*c, m[2].x[i]);
}

template <unsigned int multiplier, Word Message::*a, Word Message::*b, Word Message::*c, std::size_t lanes>
ALWAYS_INLINE void Pass(const TigerBoxes& boxes, Message (&m)[lanes]) {
    Round<multiplier, a, b, c, 0>(boxes, m);
    Round<multiplier, b, c, a, 1>(boxes, m);
    Round<multiplier, c, a, b, 2>(boxes, m);
    Round<multiplier, a, b, c, 3>(boxes, m);
    Round<multiplier, b, c, a, 4>(boxes, m);
    Round<multiplier, c, a, b, 5>(boxes, m);
    Round<multiplier, a, b, c, 6>(boxes, m);
    Round<multiplier, b, c, a, 7>(boxes, m);
}

template <std::size_t lanes>
ALWAYS_INLINE void CompressBlocks(std::uint64_t* const states[], const std::uint8_t* const blocks[],
                                  std::size_t count) {
    const TigerBoxes& boxes = TigerSBoxes();
    for (std::size_t offset = 0; offset != 64 * count; offset += 64) {
        Message m[lanes];
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            m[lane].a = states[lane][0];
            m[lane].b = states[lane][1];
            m[lane].c = states[lane][2];
            for (int i = 0; i < 8; ++i)
                m[lane].x[i] = LoadLittle<Word>(blocks[lane] + offset + 8 * i);
        }
        Pass<5, &Message::a, &Message::b, &Message::c>(boxes, m);
        for (Message& each : m)
            tiger::KeySchedule(each.x);
        Pass<7, &Message::c, &Message::a, &Message::b>(boxes, m);
        for (Message& each : m)
            tiger::KeySchedule(each.x);
        Pass<9, &Message::b, &Message::c, &Message::a>(boxes, m);
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            states[lane][0] ^= m[lane].a;
            states[lane][1] = m[lane].b - states[lane][1];
            states[lane][2] += m[lane].c;
        }
    }
}

} // namespace

void Tiger_Lanes_Portablex3(std::uint64_t* const states[], const std::uint8_t* const blocks[],
                            std::size_t count) {
    CompressBlocks<3>(states, blocks, count);
}

void Tiger_Lanes_Portablex2(std::uint64_t* const states[], const std::uint8_t* const blocks[],
                            std::size_t count) {
    CompressBlocks<2>(states, blocks, count);
}

} // namespace fyrn::kernels
