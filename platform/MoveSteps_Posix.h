// SPDX-License-Identifier: MIT
// The steps of a move. None of them ever replaces a file, or removes one that it cannot answer for.
// In all of them `file` is what `from` named when the move began; where it names something else by
// now, that stays.
#pragma once

#include "platform/File.h"
#include "platform/FileIdentity_Posix.h"

#include <optional>

namespace platform {

// The result of a call that failed with `error`, or of one that did not (0). None for EXDEV: the
// target is on another file system.
std::optional<MoveResult> ResultOf(int error, const char* from, const char* to);

// What it means for a move that `to` exists: moved when it is the very name of the file.
MoveResult ResultOfHolder(const char* from, const char* to);

// Renames within one file system, in one step where that is possible. None: the target is on
// another one.
std::optional<MoveResult> Rename(const char* from, const FileIdentity& file, const char* to);

// The same for a caller who holds the locks of both directories.
std::optional<MoveResult> RenameUnderLocks(const char* from, const FileIdentity& file, const char* to);

// Moves a regular file to another file system: the copy appears under its name when it is complete, and the
// original goes after that. When only the original cannot be removed, the move has succeeded and both remain.
MoveResult MoveByCopy(const char* from, const FileIdentity& file, const char* to);

} // namespace platform
