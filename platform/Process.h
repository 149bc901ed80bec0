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
// What waits for standard output is passed on first. Never reads standard input.
int AskYesNo(const wchar_t* text, const wchar_t* caption);

// Ends the process after a fault with status 3. What was written to standard output before is not lost.
[[noreturn]] void EndAfterFault();

// Writes text to standard output with the system's line ends and encoding. It may wait in a buffer. After an error
// the run goes on; see FateOfStandardOutput.
void WriteToStandardOutput(const wchar_t* text);

// Passes on to the system what waits in the buffer.
void FlushStandardOutput();

// What became of the text that was written to standard output, as far as it is known.
enum class OutputFate {
    Arrives, // all that was passed on has arrived at the system; also where there is no standard output
    Lost,    // some of it could not be written, to a full disk for instance
    Unread,  // nobody reads it any more: it goes into a pipe whose other end is closed
};

// The worst that has happened in this run.
OutputFate FateOfStandardOutput();

} // namespace platform
