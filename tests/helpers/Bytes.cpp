// SPDX-License-Identifier: MIT
#include "tests/helpers/Bytes.h"

#include <stdexcept>

namespace helpers {
namespace {

std::uint8_t Nibble(char digit) {
    const std::string_view digits = "0123456789abcdefABCDEF";
    const std::size_t index = digits.find(digit);
    if (index == std::string_view::npos)
        throw std::invalid_argument("not a hex digit");
    return static_cast<std::uint8_t>(index < 16 ? index : index - 6);
}

} // namespace

// SplitMix64, one output per eight bytes.
Bytes PseudoRandomBytes(std::size_t count, std::uint64_t seed) {
    Bytes bytes(count);
    std::uint64_t word = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (i % 8 == 0) {
            seed += 0x9e3779b97f4a7c15;
            word = (seed ^ seed >> 30) * 0xbf58476d1ce4e5b9;
            word = (word ^ word >> 27) * 0x94d049bb133111eb;
            word ^= word >> 31;
        }
        bytes[i] = static_cast<std::uint8_t>(word >> 8 * (i % 8));
    }
    return bytes;
}

Bytes BytesOf(std::string_view text) {
    return Bytes(text.begin(), text.end());
}

std::string ToHex(std::span<const std::uint8_t> bytes) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

Bytes FromHex(std::string_view text) {
    if (text.size() % 2 != 0)
        throw std::invalid_argument("odd number of hex digits");
    Bytes bytes;
    bytes.reserve(text.size() / 2);
    for (std::size_t i = 0; i < text.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(Nibble(text[i]) << 4 | Nibble(text[i + 1])));
    return bytes;
}

} // namespace helpers
