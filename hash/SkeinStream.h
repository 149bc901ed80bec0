// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// Skein 1.3 with a state of 4, 8 or 16 words of 64 bits, and a digest as long as the state.
template <std::size_t words>
class SkeinStream {
  public:
    static constexpr std::size_t blockSize = 8 * words, digestSize = blockSize; // bytes

    // Begins a message.
    void Reset();

    // Takes in bytes of the message. The last block is always kept back.
    void Update(const std::uint8_t* bytes, std::size_t count);

    // Compresses the last block and writes the digest. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    static const char* Kernel();

  private:
    void StartStage(std::uint64_t typeAndFlags);
    void Absorb(const std::uint8_t* blocks, std::size_t count, std::size_t added);

    std::uint64_t chain_[words];

  protected:
    std::uint64_t tweak_[2]; // the position, and the stage

  private:
    std::size_t fill_; // bytes in the buffer, 0 to blockSize
    std::uint8_t buffer_[blockSize];
};

extern template class SkeinStream<4>;
extern template class SkeinStream<8>;
extern template class SkeinStream<16>;

} // namespace fyrn::hash
