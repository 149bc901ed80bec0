// SPDX-License-Identifier: MIT
// UTF-8 as in RFC 3629, strictly: no overlong form, no surrogate, nothing above U+10FFFF.
#include "platform/Text.h"

#include <cstdint>

namespace platform {

namespace {

// What a byte that is no part of valid UTF-8 is moved by. The result is a lone low surrogate, which valid
// UTF-8 never yields.
constexpr std::uint32_t escapeBase = 0xDC00;

constexpr bool IsSurrogate(std::uint32_t character) {
    return character >= 0xD800 && character <= 0xDFFF;
}

// The length that a lead byte announces; 0 for a byte that cannot begin a character.
constexpr std::size_t SequenceLength(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

constexpr bool IsValid(std::uint32_t character, std::size_t length) {
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return character >= smallest[length] && character <= 0x10FFFF && !IsSurrogate(character);
}

// Reads one valid sequence and returns its length; 0 when the bytes do not begin with one.
std::size_t ReadSequence(std::string_view bytes, std::uint32_t& character) {
    const auto lead = static_cast<unsigned char>(bytes[0]);
    const std::size_t length = SequenceLength(lead);
    if (length == 0 || length > bytes.size())
        return 0;
    character = length == 1 ? lead : lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(bytes[i]);
        if ((next & 0xC0) != 0x80)
            return 0;
        character = character << 6 | (next & 0x3F);
    }
    return IsValid(character, length) ? length : 0;
}

} // namespace

std::size_t DecodeCharacter(std::string_view bytes, wchar_t& character) {
    std::uint32_t value;
    const std::size_t length = ReadSequence(bytes, value);
    if (length == 0)
        value = escapeBase + static_cast<unsigned char>(bytes[0]);
    character = static_cast<wchar_t>(value);
    return length == 0 ? 1 : length;
}

std::size_t EncodeCharacter(wchar_t character, char* bytes) {
    auto value = static_cast<std::uint32_t>(character);
    if (value >= escapeBase + 0x80 && value <= escapeBase + 0xFF) {
        bytes[0] = static_cast<char>(value - escapeBase);
        return 1;
    }
    if (value > 0x10FFFF || IsSurrogate(value))
        value = '?';
    if (value < 0x80) {
        bytes[0] = static_cast<char>(value);
        return 1;
    }
    const std::size_t length = value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
    for (std::size_t i = length - 1; i > 0; --i, value >>= 6)
        bytes[i] = static_cast<char>(0x80 | (value & 0x3F));
    bytes[0] = static_cast<char>((0xF00u >> length & 0xFF) | value);
    return length;
}

} // namespace platform
