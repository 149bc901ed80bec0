// SPDX-License-Identifier: MIT
// Splitting of paths into drive, directory, base name and extension, as pure functions: both systems' rules can be
// tested on either.
#pragma once

#include "platform/Directory.h"

namespace platform {

// Only "/" separates, and there is no drive part.
void SplitPathByPosixRules(const wchar_t* path, PathParts& parts);

// "\" and "/" separate, and one character followed by ":" is the drive.
void SplitPathByWindowsRules(const wchar_t* path, PathParts& parts);

} // namespace platform
