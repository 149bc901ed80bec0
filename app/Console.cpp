// SPDX-License-Identifier: MIT
#include "app/Console.h"

#include "platform/Directory.h"
#include "platform/Process.h"

#include <iterator>

void ConsolePrintList(const wchar_t* format, std::initializer_list<FormatArgument> arguments) {
    wchar_t line[sizeof(platform::PathParts) / sizeof(wchar_t) + 1]; // holds a digest, too
    if (FormatWide(line, std::size(line), format, arguments.begin(), arguments.size()) < std::size(line))
        platform::WriteToStandardOutput(line);
    else
        platform::WriteToStandardOutput(FormatTextList(format, arguments).c_str());
}
