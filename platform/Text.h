// SPDX-License-Identifier: MIT
// Names and text between the system's bytes and wide characters.
// POSIX names are bytes: valid UTF-8 is decoded to code points whatever the locale, and every other byte
// becomes U+DC00 + byte, which encoding reverses, so that nothing is lost. On Windows the bytes are those of
// the current locale, and "?" stands for what it cannot express.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// Throw std::bad_alloc.
std::wstring DecodeName(std::string_view bytes);
std::string EncodeName(std::wstring_view text);

// Decodes into a buffer and terminates it. False, with an empty text, when the text and its terminating zero
// do not fit. Allocates nothing.
bool DecodeInto(std::string_view bytes, wchar_t* buffer, std::size_t capacity);

// Decodes the first character of a text that is not empty and returns how many bytes it takes, at least 1.
std::size_t DecodeCharacter(std::string_view bytes, wchar_t& character);

// Encodes one character and returns how many bytes it takes. `bytes` has room for maxEncodedCharacter.
inline constexpr std::size_t maxEncodedCharacter = 16;
std::size_t EncodeCharacter(wchar_t character, char* bytes);

} // namespace platform
