// SPDX-License-Identifier: MIT
// A process and a user made of values. A test program that links this has no other: it asks nobody, and it
// ends by an exception. Nothing here allocates while the program under test runs.
#pragma once

#include "platform/Directory.h"
#include "platform/Process.h"

#include <cstddef>
#include <string>

namespace fakes {

struct Process {
    // Where nothing can be logged. Empty: cannot be told.
    std::wstring executablePath = std::wstring(L"no such directory") + platform::pathSeparator + L"fyrn";
    std::wstring computerName; // likewise
    int answer = platform::answerYes;

    std::size_t questionCount = 0;
    wchar_t question[8192] = {}; // the last one
    wchar_t caption[64] = {};
};

// The process that the program under test sees. Assign Process() to begin afresh.
Process& TheProcess();

// Thrown by platform::EndAfterFault.
struct ProcessEnded {};

} // namespace fakes
