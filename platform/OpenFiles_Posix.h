// SPDX-License-Identifier: MIT
// The files that this process holds open for reading. A file that was left open had its reading interrupted:
// its digest is not known, so it is neither moved nor removed. The same holds for a file that a failing system kept
// from being read.
#pragma once

#include "platform/FileIdentity_Posix.h"

namespace platform {

// Makes room for one more file, so that none of the functions below fails. Throws std::bad_alloc.
void MakeRoomForOpenFile();

void RememberOpenFile(int descriptor, const char* path, const FileIdentity& file);

// Treats a file as open until the end of the run: it could not be opened because descriptors or memory were
// used up, or because the disk failed, which says nothing against the file. Where not even the path can be
// looked at, PinPath.
void PinFile(const char* path);

// Treats whatever is at a path as open, until this is called for another one. No other file is concerned.
void PinPath(const char* path);

// The same for an open file that could not be read to its end.
void PinOpenFile(int descriptor);

void ForgetOpenFile(int descriptor);

// Whether the file at this path is one of them.
bool IsHeldOpen(const char* path, const FileIdentity& file);

// Whether the last file that was opened had this absolute path, and was not this one: somebody has
// put another in its place, whose digest is not known.
bool WasAnotherWhenOpened(const char* path, const FileIdentity& file);

} // namespace platform
