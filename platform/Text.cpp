// SPDX-License-Identifier: MIT
#include "platform/Text.h"

namespace platform {

std::wstring DecodeName(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        wchar_t character;
        bytes.remove_prefix(DecodeCharacter(bytes, character));
        text.push_back(character);
    }
    return text;
}

std::string EncodeName(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t character : text) {
        char encoded[maxEncodedCharacter];
        bytes.append(encoded, EncodeCharacter(character, encoded));
    }
    return bytes;
}

bool DecodeInto(std::string_view bytes, wchar_t* buffer, std::size_t capacity) {
    std::size_t length = 0;
    while (!bytes.empty() && length < capacity) {
        wchar_t character;
        bytes.remove_prefix(DecodeCharacter(bytes, character));
        buffer[length++] = character;
    }
    const bool fits = length < capacity;
    if (capacity != 0)
        buffer[fits ? length : 0] = L'\0';
    return fits;
}

} // namespace platform
