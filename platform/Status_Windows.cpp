// SPDX-License-Identifier: MIT
// The console's own calls, which work in every console and with every character.
#include "platform/Status.h"

#include <cwchar>
#include <windows.h>

namespace platform {

namespace {

bool shown = false;

HANDLE Console() {
    return GetStdHandle(STD_ERROR_HANDLE);
}

// What reads from a pipe, as a pager does, may be drawing in the same console.
bool IsOutputPiped() {
    return GetFileType(GetStdHandle(STD_OUTPUT_HANDLE)) == FILE_TYPE_PIPE;
}

// Clears the cursor's line and goes to its start.
void ClearLine() {
    CONSOLE_SCREEN_BUFFER_INFO buffer;
    if (GetConsoleScreenBufferInfo(Console(), &buffer) == 0)
        return;
    const COORD start = {0, buffer.dwCursorPosition.Y};
    DWORD count;
    FillConsoleOutputCharacterW(Console(), L' ', static_cast<DWORD>(buffer.dwSize.X), start, &count);
    SetConsoleCursorPosition(Console(), start);
}

} // namespace

std::size_t StatusColumns() {
    CONSOLE_SCREEN_BUFFER_INFO buffer; // only a console has one
    if (IsOutputPiped())
        return 0;
    return GetConsoleScreenBufferInfo(Console(), &buffer) != 0 ? static_cast<std::size_t>(buffer.dwSize.X)
                                                               : 0;
}

void ShowStatus(const wchar_t* text) {
    DWORD count;
    ClearLine();
    WriteConsoleW(Console(), text, static_cast<DWORD>(std::wcslen(text)), &count, nullptr);
    shown = true;
}

void WipeStatus() {
    if (shown)
        ClearLine();
    shown = false;
}

} // namespace platform
