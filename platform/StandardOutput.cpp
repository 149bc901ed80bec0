// SPDX-License-Identifier: MIT
// The C library's wide output is never touched: it would drop the rest of a line at a character that the
// locale cannot express, and one call makes the stream wide for good.
#include "platform/EncodedPieces.h"
#include "platform/Process.h"
#include "platform/Status.h"

#include <cstdio>

namespace platform {

void WriteToStandardOutput(const wchar_t* text) {
    WipeStatus();
    ForEachEncodedPiece(text, [](const char* bytes, std::size_t count) {
        [[maybe_unused]] const std::size_t written = std::fwrite(bytes, 1, count, stdout);
    });
}

} // namespace platform
