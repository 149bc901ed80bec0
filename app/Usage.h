// SPDX-License-Identifier: MIT
#pragma once

// Prints the usage text, under the name the program was invoked by, and the version banner.
void PrintUsage(const wchar_t* invocation);
