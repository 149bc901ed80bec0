// SPDX-License-Identifier: MIT
#include "crypto/Md4Md5Context.h"

#include "hash/kernels/ByteOrder.h"

#include <algorithm>
#include <iterator>

void Md4Md5Context::Reset() {
    *this = Md4Md5Context{};
}

void Md4Md5Context::SetInitialState() {
    static constexpr std::uint32_t initial[4] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    std::copy(std::begin(initial), std::end(initial), state);
}

void Md4Md5Context::Absorb(const unsigned char* bytes, unsigned int count, Compress* compress) {
    const unsigned int index = Buffered();
    const unsigned int room = blockSize - index;
    CountBytes(count);
    if (count < room) {
        std::copy_n(bytes, count, buffer + index);
        return;
    }
    std::copy_n(bytes, room, buffer + index);
    compress(state, buffer, 1);
    const unsigned int whole = (count - room) / blockSize;
    if (whole != 0)
        compress(state, bytes + room, whole);
    const unsigned int taken = room + whole * blockSize;
    std::copy_n(bytes + taken, count - taken, buffer);
}

void Md4Md5Context::Finish(Compress* compress) {
    static constexpr unsigned char padding[blockSize] = {0x80};
    unsigned char length[8];
    fyrn::kernels::StoreLittle(length, bitCountLow);
    fyrn::kernels::StoreLittle(length + 4, bitCountHigh);

    const unsigned int index = Buffered();
    Absorb(padding, index < 56 ? 56 - index : 120 - index, compress);
    Absorb(length, sizeof length, compress);
    for (std::size_t i = 0; i < std::size(state); ++i)
        fyrn::kernels::StoreLittle(digest + 4 * i, state[i]);
}

void Md4Md5Context::CountBytes(unsigned int count) {
    const std::uint32_t bits = count << 3;
    bitCountLow += bits;
    if (bitCountLow < bits)
        ++bitCountHigh;
    bitCountHigh += count >> 29;
}
