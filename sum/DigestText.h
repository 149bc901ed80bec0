// SPDX-License-Identifier: MIT
// Digests as lists have them: hexadecimal digits of either case, base64, or a decimal number.
#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace sum {

// How many bytes the text stands for: nothing unless it is hexadecimal, two digits for each byte.
std::optional<std::size_t> HexBytes(std::string_view text);

// The same for base64 with its padding.
std::optional<std::size_t> Base64Bytes(std::string_view text);

// Whether the text is this digest, in hexadecimal or base64.
bool IsDigest(std::string_view text, std::span<const std::byte> digest);

// Whether a decimal number is this digest, the most significant byte first.
bool IsDecimalDigest(std::string_view text, std::span<const std::byte> digest);

// The lengths, in bytes, that the digests of a list may have when no tag tells the function.
struct DigestSizes {
    static constexpr std::size_t longest = 128;

    std::bitset<longest + 1> each;
    bool anyLength = false; // a function has a digest of every length

    bool Has(std::size_t bytes) const {
        return bytes > 0 && (anyLength || (bytes <= longest && each.test(bytes)));
    }
};

} // namespace sum
