// SPDX-License-Identifier: MIT
#pragma once

#include "app/RunContext.h"

// Prints a file's name line and the lines of the selected digests, and then renames the file when that is
// asked for and these lines have reached the system. The file is opened and read once per selected row.
// Needs no memory but the engines', which report when there is none. Throws ReaderGone.
void ProcessFile(RunContext& context, const wchar_t* path);
