// SPDX-License-Identifier: MIT
// What the two names of a move mean.
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

// Whether a directory, by its full path, is one whose names belong to the system: /dev/stdin is no
// name to be given away. /dev/shm is ordinary storage.
bool BelongsToSystem(std::string_view directory);

// Whether there is an entry of this name, be it a link that leads nowhere.
bool Exists(const char* path);

bool IsLink(const char* path);

// Whether a path names this very file or, for a link, this very link.
bool Names(const char* path, const FileIdentity& file);

// Whether both paths name one file under one name, whatever way leads there: another directory
// path, a second mount, another spelling where the file system knows only one. Two hard links of a
// file are two names.
bool IsSameName(const char* from, const char* to);

} // namespace platform
