// SPDX-License-Identifier: MIT
#pragma once

#include "support/WideFormat.h"

#include <initializer_list>

void ConsolePrintList(const wchar_t* format, std::initializer_list<FormatArgument> arguments);

// Prints formatted text to standard output; every line of the program's output goes
// through here. The conversions are those of FormatText. The lines of a report need no
// memory; longer text may throw std::bad_alloc.
template <class... Arguments>
void ConsolePrintf(const wchar_t* format, const Arguments&... arguments) {
    ConsolePrintList(format, {FormatArgument(arguments)...});
}
