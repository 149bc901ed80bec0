// SPDX-License-Identifier: MIT
// The question after a fault and the end of the process. A source of their own, so that a test can link other
// ones in their place.
#include "platform/EncodedPieces.h"
#include "platform/Process.h"
#include "platform/Status.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr int nobodyAnswered = 0;
constexpr int faultStatus = 3;

void Write(int terminal, const wchar_t* text) {
    ForEachEncodedPiece(text, [terminal](const char* bytes, std::size_t count) {
        [[maybe_unused]] const ssize_t written = write(terminal, bytes, count);
    });
}

// The next byte that the user typed; 0 at the end of input.
char ReadByte(int terminal) {
    char byte;
    ssize_t count;
    do
        count = read(terminal, &byte, 1);
    while (count == -1 && errno == EINTR);
    return count == 1 ? byte : '\0';
}

// Reads one line and returns its first byte; 0 at the end of input, "\n" for an empty line.
char ReadLine(int terminal) {
    const char first = ReadByte(terminal);
    for (char byte = first; byte != '\n' && byte != '\0';)
        byte = ReadByte(terminal);
    return first;
}

int ReadAnswer(int terminal) {
    for (;;) {
        Write(terminal, L" [y/n] ");
        switch (ReadLine(terminal)) {
        case 'y':
        case 'Y':
            return answerYes;
        case 'n':
        case 'N':
            return answerNo;
        case '\0':
            return nobodyAnswered;
        }
    }
}

bool AbortIsHandled() {
    struct sigaction action;
    return sigaction(SIGABRT, nullptr, &action) == 0 && action.sa_handler != SIG_DFL &&
           action.sa_handler != SIG_IGN;
}

} // namespace

// A process in the background would be stopped by reading from its terminal: nobody is asked then.
int AskYesNo(const wchar_t* text, const wchar_t* caption) {
    WipeStatus();
    FlushStandardOutput();
    const int terminal = open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY);
    if (terminal == -1)
        return nobodyAnswered;
    int answer = nobodyAnswered;
    if (tcgetpgrp(terminal) == getpgrp()) {
        for (const wchar_t* part : {L"\n", caption, L"\n", text})
            Write(terminal, part);
        answer = ReadAnswer(terminal);
    }
    close(terminal);
    return answer;
}

// Without a handler of its own, the signal would end the process with another status than the runtimes do
// where they abort.
void EndAfterFault() {
    std::fflush(stdout);
    if (AbortIsHandled())
        std::raise(SIGABRT);
    _exit(faultStatus);
}

} // namespace platform
