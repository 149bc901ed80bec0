// SPDX-License-Identifier: MIT
// The rules by which a path is split, as pure functions: those of both systems on every system.
#pragma once

#include "platform/Directory.h"

namespace platform {

// Only "/" separates and there is no drive: "\" and ":" are ordinary characters.
void SplitPathByPosixRules(const wchar_t* path, PathParts& parts);

// Both separators count, and any one character before a ":" is a drive, as in _wsplitpath_s.
void SplitPathByWindowsRules(const wchar_t* path, PathParts& parts);

} // namespace platform
