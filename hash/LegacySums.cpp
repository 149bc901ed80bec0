// SPDX-License-Identifier: MIT
#include "hash/LegacySums.h"

#include <algorithm>
#include <bit>

namespace fyrn::hash {
namespace {

constexpr std::uint32_t reflectedPolynomial = 0xedb88320;

// The bits of each byte in the opposite order.
template <class Word>
constexpr Word ReverseBitsOfBytes(Word word) {
    constexpr Word everyByte = static_cast<Word>(~Word{0}) / 0xff;
    word = (word >> 4 & everyByte * 0x0f) | (word & everyByte * 0x0f) << 4;
    word = (word >> 2 & everyByte * 0x33) | (word & everyByte * 0x33) << 2;
    return (word >> 1 & everyByte * 0x55) | (word & everyByte * 0x55) << 1;
}

void CopyReversed(std::uint8_t* reversed, const std::uint8_t* bytes, std::size_t count) {
    std::size_t i = 0;
    for (; i + 8 <= count; i += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes + i, sizeof word);
        word = ReverseBitsOfBytes(word);
        std::memcpy(reversed + i, &word, sizeof word);
    }
    for (; i < count; ++i)
        reversed[i] = static_cast<std::uint8_t>(ReverseBitsOfBytes<std::uint32_t>(bytes[i]));
}

} // namespace

void CksumStream::Reset() {
    register_ = 0;
    length_ = 0;
}

// A register that shifts left is one that shifts right with all bits, those of the data as well, in the opposite order.
void CksumStream::Absorb(const std::uint8_t* bytes, std::size_t count) {
    std::uint8_t reversed[4096];
    while (count != 0) {
        const std::size_t piece = std::min(count, sizeof reversed);
        CopyReversed(reversed, bytes, piece);
        register_ = kernels::Kernels().crc(CrcTablesOf<reflectedPolynomial>(), register_, reversed, piece);
        bytes += piece;
        count -= piece;
    }
}

void CksumStream::Update(const std::uint8_t* bytes, std::size_t count) {
    Absorb(bytes, count);
    length_ += count;
}

// The length follows as a number without leading zero bytes, its lowest byte first.
void CksumStream::Finish(std::uint8_t* digest) {
    std::uint8_t length[8];
    kernels::StoreLittle(length, length_);
    Absorb(length, static_cast<std::size_t>(std::bit_width(length_) + 7) / 8);
    const auto crc = static_cast<std::uint32_t>(register_);
    kernels::StoreBig(digest, ~kernels::ByteSwap(ReverseBitsOfBytes(crc)));
}

void BsdSumStream::Update(const std::uint8_t* bytes, std::size_t count) {
    std::uint16_t sum = sum_;
    for (std::size_t i = 0; i < count; ++i)
        sum = static_cast<std::uint16_t>(std::rotr(sum, 1) + bytes[i]);
    sum_ = sum;
}

void SysvSumStream::Update(const std::uint8_t* bytes, std::size_t count) {
    std::uint32_t sum = sum_;
    for (std::size_t i = 0; i < count; ++i)
        sum += bytes[i];
    sum_ = sum;
}

void SysvSumStream::Finish(std::uint8_t* digest) {
    const std::uint32_t once = (sum_ & 0xffff) + (sum_ >> 16);
    kernels::StoreBig(digest, static_cast<std::uint16_t>((once & 0xffff) + (once >> 16)));
}

} // namespace fyrn::hash
