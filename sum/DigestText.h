// SPDX-License-Identifier: MIT
// Digests as lists have them: hexadecimal digits of either case, base64, or a decimal number.
#pragma once

#include <bitset>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace sum {

// How many bytes the text stands for: nothing unless it is hexadecimal, two digits for each byte.
std::optional<std::size_t> HexBytes(std::string_view text);

// The same for base64 with its padding.
std::optional<std::size_t> Base64Bytes(std::string_view text);

// The bytes that base64 stands for; what is none is passed over.
std::vector<std::byte> BytesOfBase64(std::string_view text);

// The bytes of a digest of `size` bytes, in hexadecimal, base64 or, with `decimal`, as a number of
// which the most significant byte comes first. The text is known to be a digest; a number that is
// none of that size has other bytes than any.
std::vector<std::byte> DigestBytes(std::string_view text, bool decimal, std::size_t size);

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
