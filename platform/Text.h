// SPDX-License-Identifier: MIT
// Names and text between the system's bytes and wide characters, without loss.
// POSIX names are bytes: valid UTF-8 is decoded to code points whatever the
// locale, and every other byte becomes U+DC00 + byte, which encoding reverses.
#pragma once

#include <string>
#include <string_view>

namespace platform {

std::wstring DecodeName(std::string_view bytes);
std::string EncodeName(std::wstring_view text);

} // namespace platform
