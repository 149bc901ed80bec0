// SPDX-License-Identifier: MIT
#include "sum/Utf8.h"

namespace sum {

namespace {

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

// Control characters, marks of direction, line and paragraph separators, characters without width,
// tags, and what is no character at all.
constexpr Range notShown[] = {
    {0, 0x1f},        {0x7f, 0x9f},       {0xad, 0xad},       {0x61c, 0x61c},
    {0x180e, 0x180e}, {0x200b, 0x200f},   {0x2028, 0x202e},   {0x2060, 0x206f},
    {0xd800, 0xdfff}, {0xfdd0, 0xfdef},   {0xfeff, 0xfeff},   {0xfff0, 0xfffb},
    {0xfffe, 0xffff}, {0x1d173, 0x1d17a}, {0xe0000, 0xe0fff}, {0xf0000, 0xffffffff},
};

bool IsShown(std::uint32_t code) {
    for (const Range& range : notShown)
        if (code >= range.first && code <= range.last)
            return false;
    return true;
}

std::uint32_t ByteAt(std::string_view text, std::size_t place) {
    return static_cast<unsigned char>(text[place]);
}

// The bytes of a character that begins with this one; 0 when none does.
std::size_t LengthFrom(std::uint32_t byte) {
    if (byte < 0x80)
        return 1;
    if (byte < 0xc2 || byte > 0xf4)
        return 0;
    return byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4;
}

// Longer than needed, half of a pair, or beyond the last character.
bool IsWrong(std::uint32_t code, std::size_t length) {
    constexpr std::uint32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    return code < least[length] || (code >= 0xd800 && code <= 0xdfff) || code > 0x10ffff;
}

} // namespace

Character FirstCharacter(std::string_view text) {
    const std::uint32_t first = ByteAt(text, 0);
    const std::size_t length = LengthFrom(first);
    if (length == 0 || length > text.size())
        return {};
    std::uint32_t code = length == 1 ? first : first & (0x7fU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((ByteAt(text, i) & 0xc0) != 0x80)
            return {};
        code = code << 6 | (ByteAt(text, i) & 0x3f);
    }
    if (IsWrong(code, length))
        return {};
    return {length, true, IsShown(code), code};
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        if (!character.valid)
            return false;
        text.remove_prefix(character.length);
    }
    return true;
}

bool IsShowable(std::string_view text) {
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        if (!character.showable)
            return false;
        text.remove_prefix(character.length);
    }
    return true;
}

} // namespace sum
