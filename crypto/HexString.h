// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// Renders bytes as lower-case hex text, high nibble first, into a buffer of `capacity` characters: as many
// leading whole bytes as fit with the terminating zero. A capacity of 1 or 2 gives the empty text.
void HexString_FromBytes(char* text, std::uint32_t capacity, const unsigned char* bytes,
                         std::uint32_t length);

// The same without a limit: `text` holds 2 * length + 1 characters.
void HexString_FromAllBytes(char* text, const unsigned char* bytes, std::uint32_t length);
