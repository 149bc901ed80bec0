// SPDX-License-Identifier: MIT
#include "crypto/kernels/KernelSelect.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// The compression of the padded empty message, from the suite of RFC 1321.
TEST(Md5Blocks, CompressesThePaddedEmptyMessage) {
    for (const auto& candidate : kernels::Md5Candidates()) {
        std::uint32_t state[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
        const std::uint8_t block[64] = {0x80};
        candidate.function(state, block, 1);
        EXPECT_EQ(state[0], 0xd98c1dd4u) << candidate.name;
        EXPECT_EQ(state[1], 0x04b2008fu) << candidate.name;
        EXPECT_EQ(state[2], 0x980980e9u) << candidate.name;
        EXPECT_EQ(state[3], 0x7e42f8ecu) << candidate.name;
    }
}

} // namespace
