// SPDX-License-Identifier: MIT
#include "sum/DigestText.h"

#include "sum/Escape.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace sum {

namespace {

// The value of each character that is a hexadecimal digit, of any other -1. Long lists are mostly
// digits.
constexpr auto hexValues = [] {
    std::array<signed char, 256> values{};
    values.fill(-1);
    for (int value = 0; value < 16; ++value) {
        values[static_cast<unsigned char>("0123456789abcdef"[value])] = static_cast<signed char>(value);
        values[static_cast<unsigned char>("0123456789ABCDEF"[value])] = static_cast<signed char>(value);
    }
    return values;
}();

int HexValue(char digit) {
    return hexValues[static_cast<unsigned char>(digit)];
}

bool IsHexDigest(std::string_view text, std::span<const std::byte> digest) {
    for (std::size_t i = 0; i < digest.size(); ++i) {
        const auto byte = std::to_integer<int>(digest[i]);
        if (HexValue(text[2 * i]) != byte >> 4 || HexValue(text[2 * i + 1]) != (byte & 15))
            return false;
    }
    return true;
}

std::vector<std::byte> OfHex(std::string_view text) {
    std::vector<std::byte> bytes(text.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(HexValue(text[2 * i]) << 4 | HexValue(text[2 * i + 1]));
    return bytes;
}

// A number that is too large for any digest of this size has more bytes.
std::vector<std::byte> OfNumber(std::string_view text, std::size_t size) {
    std::uint64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    const bool fits = size >= sizeof number || number >> (8 * size) == 0;
    std::vector<std::byte> bytes(fits ? size : sizeof number);
    size = bytes.size();
    for (std::size_t i = size; i-- > 0; number >>= 8)
        bytes[i] = static_cast<std::byte>(number & 0xff);
    return bytes;
}

} // namespace

std::optional<std::size_t> HexBytes(std::string_view text) {
    if (text.empty() || text.size() % 2 != 0 ||
        !std::ranges::all_of(text, [](char digit) { return HexValue(digit) >= 0; }))
        return std::nullopt;
    return text.size() / 2;
}

std::optional<std::size_t> Base64Bytes(std::string_view text) {
    if (text.empty() || text.size() % 4 != 0)
        return std::nullopt;
    const std::size_t padding = text.ends_with("==") ? 2 : text.ends_with('=') ? 1 : 0;
    const std::string_view digits = text.substr(0, text.size() - padding);
    const auto isDigit = [](char digit) {
        const char lower = static_cast<char>(digit | 0x20);
        return (lower >= 'a' && lower <= 'z') || (digit >= '0' && digit <= '9') || digit == '+' ||
               digit == '/';
    };
    if (!std::ranges::all_of(digits, isDigit))
        return std::nullopt;
    return text.size() / 4 * 3 - padding;
}

std::vector<std::byte> BytesOfBase64(std::string_view text) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::vector<std::byte> bytes;
    std::uint32_t group = 0;
    unsigned bits = 0;
    for (const char digit : text.substr(0, text.find('='))) {
        const std::size_t value = digits.find(digit);
        if (value == std::string_view::npos)
            continue;
        group = (group << 6 | static_cast<std::uint32_t>(value)) & 0xffffff;
        bits += 6;
        if (bits < 8)
            continue;
        bits -= 8;
        bytes.push_back(static_cast<std::byte>(group >> bits & 0xff));
    }
    return bytes;
}

std::vector<std::byte> DigestBytes(std::string_view text, bool decimal, std::size_t size) {
    if (decimal)
        return OfNumber(text, size);
    return HexBytes(text) == size ? OfHex(text) : BytesOfBase64(text);
}

bool IsDigest(std::string_view text, std::span<const std::byte> digest) {
    if (HexBytes(text) == digest.size())
        return IsHexDigest(text, digest);
    return text == ToBase64(digest);
}

bool IsDecimalDigest(std::string_view text, std::span<const std::byte> digest) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || digest.size() > sizeof number)
        return false;
    std::uint64_t expected = 0;
    for (const std::byte byte : digest)
        expected = expected << 8 | std::to_integer<std::uint64_t>(byte);
    return number == expected;
}

} // namespace sum
