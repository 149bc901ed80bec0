// SPDX-License-Identifier: MIT
#include "platform/EncodedPieces.h"
#include "platform/Status.h"

#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr char toLineStart[] = "\r";
constexpr char clearRest[] = "\x1b[K";

bool shown = false;

bool CanTakeBack() {
    const char* const terminal = std::getenv("TERM");
    return terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

// One call, so that no half of a line is ever seen.
void Write(const char* bytes, std::size_t count) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, bytes, count);
}

} // namespace

std::size_t StatusColumns() {
    winsize size;
    if (isatty(STDERR_FILENO) == 0 || tcgetpgrp(STDERR_FILENO) != getpgrp() || !CanTakeBack())
        return 0;
    constexpr std::size_t usual = 80; // a terminal that does not know its size
    return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col != 0 ? size.ws_col : usual;
}

void ShowStatus(const wchar_t* text) {
    char line[sizeof toLineStart + (maxStatusLength + 1) * maxEncodedCharacter + sizeof clearRest];
    std::size_t length = 0;
    const auto append = [&](const char* bytes, std::size_t count) {
        std::memcpy(line + length, bytes, count);
        length += count;
    };
    append(toLineStart, std::strlen(toLineStart));
    ForEachEncodedPiece(text, append);
    append(clearRest, std::strlen(clearRest));
    Write(line, length);
    shown = true;
}

void WipeStatus() {
    if (!shown)
        return;
    constexpr char wipe[] = "\r\x1b[K";
    Write(wipe, std::strlen(wipe));
    shown = false;
}

} // namespace platform
