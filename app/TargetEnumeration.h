// SPDX-License-Identifier: MIT
// From the command line's targets to files.
//
// Both functions return false when the way back to the directory that was current before is lost.
// The caller stops then: the names that follow would be looked up, and renamed files put, in a
// directory that nobody meant.
#pragma once

#include "app/RunContext.h"

// Processes what an argument names: a file, the files of a directory, or every match of a pattern.
// An argument that names nothing is passed over in silence.
bool ProcessTarget(RunContext& context, const wchar_t* argument);

// Processes every file of a directory, and of its sub-directories when the run recurses. While a
// directory is walked it is the current one. A directory that cannot be entered is passed over in silence.
bool ProcessDirectory(RunContext& context, const wchar_t* directory);
