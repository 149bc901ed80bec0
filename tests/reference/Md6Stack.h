// SPDX-License-Identifier: MIT
// MD6's mode of operation in the form for data that comes in pieces: a stack with one block of 4096 bits per
// level, every node compressed alone and as soon as the data goes on behind it.
#pragma once

#include "tests/reference/Md6.h"

#include <array>
#include <cstdint>
#include <vector>

namespace reference {

class Md6Stack {
  public:
    explicit Md6Stack(const Md6Parameters& parameters);

    // Takes bits, one per element.
    void Update(const std::vector<bool>& bits);

    // Both return 0, or 3 and 4 for a level below 0 and above 27, or 13 where level 0 has left more than a block.
    int Process(int level, bool final);
    int CompressBlock(std::vector<std::uint64_t>& value, int level, bool root);

    // The words of the root, as they lie in memory; zeros before there is one.
    std::vector<std::uint8_t> HashValue() const;

    // The digest. The last thing before must have been an Update with data. When all other data was taken
    // away by CompressBlock, no node is the root, and the digest is what Process left, or zeros.
    std::vector<std::uint8_t> Final();

  private:
    struct Level {
        std::vector<bool> bits;
        std::uint64_t nextIndex = 0;
    };

    Md6Parameters parameters_;
    std::vector<std::uint64_t> prefix_; // Q and K
    std::array<Level, 29> levels_;
    int top_ = 1;
    std::vector<std::uint64_t> rootValue_ = std::vector<std::uint64_t>(16, 0);
};

} // namespace reference
