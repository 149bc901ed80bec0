// SPDX-License-Identifier: MIT
// The process and its user: identity, the question after a fault, standard output, the end.
#pragma once

#include <cstddef>

namespace platform {

// Writes the executable's full path and returns its length; 0 when it cannot be told. Where it does not
// fit, `capacity`, and what the buffer holds is of no use.
std::size_t ExecutablePath(wchar_t* buffer, std::size_t capacity);

// Writes the computer's name; false when it cannot be told or does not fit.
bool ComputerName(wchar_t* buffer, std::size_t capacity);

// Answers of AskYesNo. Anything else means that nobody could be asked.
inline constexpr int answerYes = 6;
inline constexpr int answerNo = 7;

// Shows a message and asks yes or no, where a user can be asked: a message box, or the controlling terminal.
// Never reads standard input and never writes to standard output.
int AskYesNo(const wchar_t* text, const wchar_t* caption);

// Ends the process after a fault with status 3. What was written to standard output before is not lost.
[[noreturn]] void EndAfterFault();

// Writes text to standard output with the system's line ends and encoding. Errors are ignored.
void WriteToStandardOutput(const wchar_t* text);

} // namespace platform
