// SPDX-License-Identifier: MIT
#pragma once

#include "platform/Process.h"
#include "support/WideFormat.h"

// Prints formatted text to standard output; every line of the program's output goes
// through here. The conversions are those of FormatText. Throws std::bad_alloc.
template <class... Arguments>
void ConsolePrintf(const wchar_t* format, const Arguments&... arguments) {
    platform::WriteToStandardOutput(FormatText(format, arguments...).c_str());
}
