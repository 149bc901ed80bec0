// SPDX-License-Identifier: MIT
#include "crypto/HexString.h"

#include <algorithm>

void HexString_FromBytes(char* text, std::uint32_t capacity, const unsigned char* bytes,
                         std::uint32_t length) {
    if (text == nullptr || capacity == 0)
        return;
    text[0] = '\0';
    if (capacity <= 2)
        return;
    HexString_FromAllBytes(text, bytes, std::min(length, (capacity - 1) / 2));
}

void HexString_FromAllBytes(char* text, const unsigned char* bytes, std::uint32_t length) {
    static constexpr char digits[] = "0123456789abcdef";
    for (std::uint32_t i = 0; i < length; ++i) {
        *text++ = digits[bytes[i] >> 4];
        *text++ = digits[bytes[i] & 15];
    }
    *text = '\0';
}
