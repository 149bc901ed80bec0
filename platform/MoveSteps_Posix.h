// SPDX-License-Identifier: MIT
// The steps of a move. None of them ever replaces a file, or removes one that it cannot answer for.
#pragma once

#include "platform/FileIdentity_Posix.h"

#include <climits>
#include <string_view>

namespace platform {

// A path's directory ("." when it has none) and its last component.
struct SplitNativePath {
    explicit SplitNativePath(const char* path);

    char parent[PATH_MAX];
    const char* name; // into the path
};

// Whether a directory, by its full path, is one whose names belong to the system: /dev/stdin is no name to be
// given away. /dev/shm is ordinary storage.
bool BelongsToSystem(std::string_view directory);

bool IsLink(const char* path);

// Whether a path names this very file or, for a link, this very link.
bool Names(const char* path, const FileIdentity& file);

// Whether both paths name one file under one name, whatever way leads there: another directory path, a second
// mount, another spelling where the file system knows only one. Two hard links of a file are two names.
bool IsSameName(const char* from, const char* to);

// Renames within one file system. 0 for success, which includes that the file already bears the name; else the
// error number, EXDEV when the target is on another file system.
int RenameWithoutReplacing(const char* from, const char* to);

// Moves a regular file to another file system: the copy appears under its name when it is complete, and the
// original goes after that. When only the original cannot be removed, the move has succeeded and both remain.
// 0 for success, else the error number.
int MoveByCopy(const char* from, const char* to);

} // namespace platform
