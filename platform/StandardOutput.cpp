// SPDX-License-Identifier: MIT
// The C library's wide output is never touched: it would drop the rest of a line at a character that the
// locale cannot express, and one call makes the stream wide for good.
#include "platform/StandardOutput.h"

#include "platform/EncodedPieces.h"
#include "platform/Process.h"
#include "platform/Status.h"

#include <cerrno>
#include <cstdio>

namespace platform {

namespace {

OutputFate fate = OutputFate::Arrives;

// Looks at the stream's error mark rather than at results: the C library may drop what its buffer held and tell by
// nothing else. A stream that was never open for writing loses nothing that anybody waits for.
void NoteFailure() {
    if (std::ferror(stdout) == 0)
        return;
    if (FoundClosedPipe())
        fate = OutputFate::Unread;
    else if (errno != EBADF && fate == OutputFate::Arrives)
        fate = OutputFate::Lost;
    std::clearerr(stdout);
}

} // namespace

void WriteToStandardOutput(const wchar_t* text) {
    WipeStatus();
    ForEachEncodedPiece(text, [](const char* bytes, std::size_t count) {
        [[maybe_unused]] const std::size_t written = std::fwrite(bytes, 1, count, stdout);
        NoteFailure();
    });
}

void FlushStandardOutput() {
    std::fflush(stdout);
    NoteFailure();
    if (IsPipeWithoutReader())
        fate = OutputFate::Unread;
}

OutputFate FateOfStandardOutput() {
    return fate;
}

} // namespace platform
