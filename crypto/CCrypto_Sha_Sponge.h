// SPDX-License-Identifier: MIT
// The Keccak sponge (FIPS 202) over messages that are padded one by one and follow each other in one state.
#pragma once

#include <cstddef>
#include <cstdint>

namespace sha {

// The bytes of a Keccak state: its lanes, low-order byte first.
void CopyStateBytes(unsigned char* bytes, const std::uint64_t state[25], std::size_t count);

class PaddedSponge {
  public:
    static constexpr std::size_t maxRate = 144;

    // `rate` is in bytes, a multiple of 8 up to maxRate; `padding` is the first byte of the padding.
    PaddedSponge(std::size_t rate, unsigned char padding) : rate_(rate), padding_(padding) {}

    // Absorbs the next piece of a message. Only the last piece may be no multiple of the rate.
    void Absorb(const unsigned char* bytes, std::size_t count);

    // Pads the message; the next piece starts another one.
    //
    // A deliberate quirk: the block buffer is not cleared between messages. Where an earlier message left a
    // longer rest than this one, its bytes stand behind the padding byte and are absorbed again. Digests
    // with a salt depend on it.
    void Pad();

    // Writes the first `count` bytes of the state.
    void Output(unsigned char* digest, std::size_t count) const { CopyStateBytes(digest, state_, count); }

  private:
    std::size_t rate_;
    unsigned char padding_;
    std::size_t rest_ = 0; // bytes at the start of the block buffer that wait for their padding
    unsigned char buffer_[maxRate] = {};
    std::uint64_t state_[25] = {};
};

} // namespace sha
