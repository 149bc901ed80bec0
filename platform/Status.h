// SPDX-License-Identifier: MIT
// One line for a user who waits, on standard error and only where that is a terminal which this process has. Whatever else is written
// comes after it is gone: standard output and the question after a fault wipe it by themselves.
// Nothing here throws, since it is called while files are being read.
#pragma once

#include <cstddef>

namespace platform {

// The columns of the terminal that standard error is; 0 when it is none, when it cannot take a line back, when
// another program has it at the moment, or when standard output is a pipe, whose reader may be drawing there.
std::size_t StatusColumns();

// Shows a line in place of the one before it. The text takes fewer columns than there are, and has at most
// maxStatusLength characters, none of which is a control character.
inline constexpr std::size_t maxStatusLength = 255;
void ShowStatus(const wchar_t* text);

// Makes the line disappear, if one is shown. It stays where this process has lost the terminal since.
void WipeStatus();

} // namespace platform
