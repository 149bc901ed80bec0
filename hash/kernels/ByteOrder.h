// SPDX-License-Identifier: MIT
// Words from bytes and back in a stated byte order, at any address, and rotations.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace fyrn::kernels {

template <class Word>
constexpr Word ByteSwap(Word value) {
    if constexpr (sizeof(Word) == 2)
        return __builtin_bswap16(value);
    else if constexpr (sizeof(Word) == 4)
        return __builtin_bswap32(value);
    else
        return __builtin_bswap64(value);
}

template <class Word>
inline Word LoadLittle(const std::uint8_t* bytes) {
    Word value;
    std::memcpy(&value, bytes, sizeof value);
    return std::endian::native == std::endian::little ? value : ByteSwap(value);
}

template <class Word>
inline Word LoadBig(const std::uint8_t* bytes) {
    Word value;
    std::memcpy(&value, bytes, sizeof value);
    return std::endian::native == std::endian::big ? value : ByteSwap(value);
}

template <class Word>
inline void StoreLittle(std::uint8_t* bytes, Word value) {
    if constexpr (std::endian::native == std::endian::big)
        value = ByteSwap(value);
    std::memcpy(bytes, &value, sizeof value);
}

template <class Word>
inline void StoreBig(std::uint8_t* bytes, Word value) {
    if constexpr (std::endian::native == std::endian::little)
        value = ByteSwap(value);
    std::memcpy(bytes, &value, sizeof value);
}

} // namespace fyrn::kernels
