// SPDX-License-Identifier: MIT
// Data moves within a level's queue, where source and target may overlap. A memcpy would do on most processors, and
// not on all: this program's own, which takes the place of the C library's, counts the overlaps.
#include "hash/Md6Level.h"

#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <vector>

using fyrn::hash::Md6Level;

#if !defined(__SANITIZE_ADDRESS__) // which has a memcpy that ends the program at an overlap

namespace {

int overlaps = 0;

void* CheckedCopy(void* to, const void* from, std::size_t count) {
    const auto target = reinterpret_cast<std::uintptr_t>(to);
    const auto source = reinterpret_cast<std::uintptr_t>(from);
    overlaps += target != source && target < source + count && source < target + count;
    return std::memmove(to, from, count);
}

} // namespace

extern "C" void* memcpy(void* to, const void* from, std::size_t count) {
    return CheckedCopy(to, from, count);
}

// What memcpy becomes where the compiler checks the size of buffers.
extern "C" void* __memcpy_chk(void* to, const void* from, std::size_t count, std::size_t) {
    return CheckedCopy(to, from, count);
}

TEST(Md6Level, ACopyThatOverlapsIsNoticed) {
    std::vector<char> bytes(100, 'x');
    volatile std::size_t count = 99;
    const int before = overlaps;
    // Through a pointer, so that no compiler sees what is done here.
    void* (*volatile copy)(void*, const void*, std::size_t) = std::memcpy;
    copy(bytes.data(), bytes.data() + 1, count);
    EXPECT_EQ(overlaps, before + 1);
    copy(bytes.data(), bytes.data() + 50, 50);
    EXPECT_EQ(overlaps, before + 1);
}

#else

const int overlaps = 0;

#endif

TEST(Md6Level, NodesThatAreDroppedMakeRoomForAllThatFollow) {
    const int before = overlaps;
    for (const std::uint32_t extra : {0u, 8u, 2000u, 4088u}) {
        for (std::uint32_t dropped = 1; dropped < Md6Level::maxNodes; ++dropped) {
            std::vector<unsigned char> data((Md6Level::capacity - extra) / 8);
            for (std::size_t i = 0; i < data.size(); ++i)
                data[i] = static_cast<unsigned char>(i * 31 + i / Md6Level::nodeBytes);
            Md6Level level;
            level.Reset();
            level.Append(data.data(), 0, Md6Level::capacity - extra);
            level.DropNodes(dropped);
            EXPECT_EQ(level.Bits(), Md6Level::capacity - extra - dropped * Md6Level::nodeBits);
            data.erase(data.begin(), data.begin() + dropped * Md6Level::nodeBytes);
            EXPECT_EQ(std::memcmp(level.PaddedData(), data.data(), data.size()), 0) << dropped;
        }
    }
    EXPECT_EQ(overlaps, before);
}
