// SPDX-License-Identifier: MIT
#include "tests/reference/Keccak.h"

namespace reference {
namespace {

std::uint64_t RotateLeft(std::uint64_t lane, unsigned int by) {
    return by == 0 ? lane : lane << by | lane >> (64 - by);
}

std::size_t Index(unsigned int x, unsigned int y) {
    return x % 5 + 5 * (y % 5);
}

// Algorithm 1.
void Theta(KeccakState& a) {
    std::uint64_t c[5];
    for (unsigned int x = 0; x < 5; ++x)
        c[x] = a[Index(x, 0)] ^ a[Index(x, 1)] ^ a[Index(x, 2)] ^ a[Index(x, 3)] ^ a[Index(x, 4)];
    for (unsigned int x = 0; x < 5; ++x)
        for (unsigned int y = 0; y < 5; ++y)
            a[Index(x, y)] ^= c[(x + 4) % 5] ^ RotateLeft(c[(x + 1) % 5], 1);
}

// Algorithm 2.
void Rho(KeccakState& a) {
    unsigned int x = 1, y = 0;
    for (unsigned int t = 0; t < 24; ++t) {
        a[Index(x, y)] = RotateLeft(a[Index(x, y)], (t + 1) * (t + 2) / 2 % 64);
        const unsigned int oldY = y;
        y = (2 * x + 3 * y) % 5;
        x = oldY;
    }
}

// Algorithm 3.
void Pi(KeccakState& a) {
    const KeccakState old = a;
    for (unsigned int x = 0; x < 5; ++x)
        for (unsigned int y = 0; y < 5; ++y)
            a[Index(x, y)] = old[Index(x + 3 * y, x)];
}

// Algorithm 4.
void Chi(KeccakState& a) {
    const KeccakState old = a;
    for (unsigned int x = 0; x < 5; ++x)
        for (unsigned int y = 0; y < 5; ++y)
            a[Index(x, y)] = old[Index(x, y)] ^ (~old[Index(x + 1, y)] & old[Index(x + 2, y)]);
}

// Algorithm 5: bit t of a shift register with the polynomial x^8 + x^6 + x^5 + x^4 + 1.
bool RoundConstantBit(unsigned int t) {
    unsigned int r = 1;
    for (unsigned int i = 0; i < t % 255; ++i)
        r = (r & 0x80) != 0 ? (r << 1 & 0xff) ^ 0x71 : r << 1;
    return (r & 1) != 0;
}

// Algorithm 6: what iota adds to lane (0, 0).
std::uint64_t RoundConstant(unsigned int round) {
    std::uint64_t constant = 0;
    for (unsigned int j = 0; j <= 6; ++j)
        if (RoundConstantBit(j + 7 * round))
            constant |= std::uint64_t{1} << ((1u << j) - 1);
    return constant;
}

void Iota(KeccakState& a, unsigned int round) {
    static const auto constants = [] {
        std::array<std::uint64_t, 24> list;
        for (unsigned int i = 0; i < 24; ++i)
            list[i] = RoundConstant(i);
        return list;
    }();
    a[0] ^= constants[round];
}

} // namespace

void KeccakPermute(KeccakState& state) {
    for (unsigned int round = 0; round < 24; ++round) {
        Theta(state);
        Rho(state);
        Pi(state);
        Chi(state);
        Iota(state, round);
    }
}

void KeccakAbsorb(KeccakState& state, const std::uint8_t* block, std::size_t lanes) {
    for (std::size_t i = 0; i < 8 * lanes; ++i)
        state[i / 8] ^= std::uint64_t{block[i]} << 8 * (i % 8);
    KeccakPermute(state);
}

helpers::Bytes Sponge(std::size_t rate, std::uint8_t suffix, std::span<const std::uint8_t> message,
                      std::size_t length) {
    helpers::Bytes padded(message.begin(), message.end());
    padded.push_back(suffix);
    padded.resize((padded.size() + rate - 1) / rate * rate);
    padded.back() ^= 0x80;
    KeccakState state = {};
    for (std::size_t at = 0; at < padded.size(); at += rate)
        KeccakAbsorb(state, padded.data() + at, rate / 8);
    helpers::Bytes output;
    while (output.size() < length) {
        for (std::size_t i = 0; i < rate; ++i)
            output.push_back(static_cast<std::uint8_t>(state[i / 8] >> 8 * (i % 8)));
        KeccakPermute(state);
    }
    output.resize(length);
    return output;
}

} // namespace reference
