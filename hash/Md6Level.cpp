// SPDX-License-Identifier: MIT
#include "hash/Md6Level.h"

#include <algorithm>
#include <cstring>

namespace fyrn::hash {

void Md6Level::Reset() {
    nextIndex_ = 0;
    bits_ = 0;
}

void Md6Level::Append(const unsigned char* bytes, std::uint64_t position, std::uint32_t count) {
    if (bits_ % 8 == 0 && position % 8 == 0 && count % 8 == 0) {
        std::memcpy(data_ + bits_ / 8, bytes + position / 8, count / 8);
        bits_ += count;
        return;
    }
    // Files never come here: they consist of whole bytes.
    for (const std::uint64_t end = position + count; position != end; ++position, ++bits_) {
        const int bit = bytes[position / 8] >> (7 - position % 8) & 1;
        const int shift = 7 - static_cast<int>(bits_ % 8);
        unsigned char& byte = data_[bits_ / 8];
        byte = static_cast<unsigned char>((byte & ~(1 << shift)) | bit << shift);
    }
}

const unsigned char* Md6Level::PaddedData() {
    std::uint32_t used = bits_ / 8;
    if (bits_ % 8 != 0) {
        data_[used] = static_cast<unsigned char>(data_[used] & 0xff00 >> bits_ % 8);
        ++used;
    }
    std::memset(data_ + used, 0, (bits_ + Padding()) / 8 - used);
    return data_;
}

void Md6Level::DropNodes(std::uint32_t count) {
    const std::uint32_t dropped = std::min(bits_, count * nodeBits);
    std::memmove(data_, data_ + dropped / 8, (bits_ - dropped + 7) / 8);
    bits_ -= dropped;
}

} // namespace fyrn::hash
