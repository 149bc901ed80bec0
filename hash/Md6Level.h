// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace fyrn::hash {

// One level of MD6's tree: the next node's index, and the data of up to eight nodes that wait to be
// compressed together. Positions count bits, the first bit of a byte being its most significant one.
class Md6Level {
  public:
    static constexpr std::uint32_t nodeBits = 4096;
    static constexpr std::uint32_t nodeBytes = nodeBits / 8;
    static constexpr std::uint32_t maxNodes = 8;
    static constexpr std::uint32_t capacity = maxNodes * nodeBits;

    // Empties the level; its first node is number 0 again. The data is left as it is, out of reach.
    void Reset();

    std::uint32_t Bits() const { return bits_; }
    std::uint32_t Room() const { return capacity - bits_; }
    std::uint64_t NextIndex() const { return nextIndex_; }

    // How many nodes the data makes, and how many of them are full.
    std::uint32_t Nodes() const { return (bits_ + nodeBits - 1) / nodeBits; }
    std::uint32_t FullNodes() const { return bits_ / nodeBits; }

    // Appends `count` bits, at most Room(), that start at bit `position` of `bytes`.
    void Append(const unsigned char* bytes, std::uint64_t position, std::uint32_t count);

    // The waiting data, filled up with zero bits to a whole number of nodes, at least one.
    const unsigned char* PaddedData();

    // The number of those zero bits.
    std::uint32_t Padding() const { return (bits_ == 0 ? nodeBits : Nodes() * nodeBits) - bits_; }

    // Drops the data of the first nodes.
    void DropNodes(std::uint32_t count);

    // Counts nodes as compressed.
    void CountNodes(std::uint32_t count) { nextIndex_ += count; }

  private:
    std::uint64_t nextIndex_;
    std::uint32_t bits_;
    alignas(64) unsigned char data_[capacity / 8];
};

} // namespace fyrn::hash
