// SPDX-License-Identifier: MIT
#include "platform/EncodedPieces.h"
#include "platform/Status.h"

#include <cstdlib>
#include <cstring>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr char toLineStart[] = "\r";
constexpr char clearRest[] = "\x1b[K";

bool shown = false;

// False for a terminal that another program has at the moment, for instance because this one was sent to the
// background: its line is not ours any more, and one byte to it may stop the process for good.
bool IsInForeground() {
    return tcgetpgrp(STDERR_FILENO) == getpgrp();
}

bool CanTakeBack() {
    const char* const terminal = std::getenv("TERM");
    return terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

// What reads from a pipe, as a pager does, may be drawing on the same terminal.
bool IsOutputPiped() {
    struct stat status;
    return fstat(STDOUT_FILENO, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISSOCK(status.st_mode));
}

// One call, so that no half of a line is ever seen.
void Write(const char* bytes, std::size_t count) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, bytes, count);
}

} // namespace

std::size_t StatusColumns() {
    winsize size;
    if (!IsInForeground() || !CanTakeBack() || IsOutputPiped())
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
    constexpr char wipe[] = "\r\x1b[K";
    if (shown && IsInForeground())
        Write(wipe, std::strlen(wipe));
    shown = false;
}

} // namespace platform
