// SPDX-License-Identifier: MIT
// From the command line's targets to files.
#pragma once

#include "app/RunContext.h"

// Processes what an argument names: a file, the files of a directory, or every match of a pattern.
// An argument that names nothing is passed over in silence.
//
// Once the way back from a walk is lost, relative arguments are passed over, and a file that an argument names
// is hashed but keeps its name: these would be looked up, and the file put, in a directory that nobody meant.
void ProcessTarget(RunContext& context, const wchar_t* argument);

// Processes every file of a directory, and of its sub-directories when the run recurses. While a
// directory is walked it is the current one. A directory that cannot be entered is passed over in silence.
// False when the way back to the directory that was current before is lost. An enclosing walk ends then.
bool ProcessDirectory(RunContext& context, const wchar_t* directory);
