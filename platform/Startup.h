// SPDX-License-Identifier: MIT
// What the process needs before its first line of work. Windows does all of it by itself.
#pragma once

#include <string>
#include <vector>

namespace platform {

// Opens those of the descriptors 0, 1 and 2 that are closed on the null device, so that no file opened later
// can become standard output, and lets writing to a closed pipe, or beyond the size that a file may have, fail
// instead of ending the process.
void PrepareStandardStreams();

// A program's arguments as wide text that may be changed, in the form that wmain takes.
struct WideArguments {
    std::vector<std::wstring> texts;
    std::vector<wchar_t*> pointers; // into `texts`, and a null pointer at the end

    WideArguments() = default;
    WideArguments(WideArguments&&) = default;
    WideArguments& operator=(WideArguments&&) = default;
};

// Throws std::bad_alloc.
WideArguments WidenArguments(int count, const char* const* arguments);

} // namespace platform
