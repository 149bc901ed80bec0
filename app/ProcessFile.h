// SPDX-License-Identifier: MIT
#pragma once

#include "app/RunContext.h"

// Prints a file's name line and the lines of the selected digests, and then renames the file when that is
// asked for. The file is opened and read once per selected row.
void ProcessFile(RunContext& context, const wchar_t* path);
