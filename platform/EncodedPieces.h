// SPDX-License-Identifier: MIT
// A wide text's bytes, piece by piece and without allocation: also for reporting that memory is used up.
#pragma once

#include "platform/Text.h"

namespace platform {

// Calls sink(bytes, count) for one piece after the other.
template <class Sink>
void ForEachEncodedPiece(const wchar_t* text, Sink sink) {
    char piece[512];
    while (*text != L'\0') {
        std::size_t length = 0;
        for (; *text != L'\0' && length + maxEncodedCharacter <= sizeof piece; ++text)
            length += EncodeCharacter(*text, piece + length);
        sink(static_cast<const char*>(piece), length);
    }
}

} // namespace platform
