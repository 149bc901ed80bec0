// SPDX-License-Identifier: MIT
// The files that this process holds open for reading. A file that was left open had its reading interrupted:
// its digest is not known, so it is neither moved nor removed. The same holds for a file that a failing system kept
// from being read.
#pragma once

#include <sys/stat.h>

namespace platform {

// Makes room for one more file, so that the three functions below cannot fail. Throws std::bad_alloc.
void MakeRoomForOpenFile();

void RememberOpenFile(int descriptor);

// Treats a file as open until the end of the run: it could not be opened because descriptors or memory were
// used up, or because the disk failed, which says nothing against the file. Where not even the path can be looked at,
// it might be any file, and every one counts as open from then on.
void PinFile(const char* path);

// The same for an open file that could not be read to its end.
void PinOpenFile(int descriptor);

void ForgetOpenFile(int descriptor);

// Whether the file is one of them.
bool IsHeldOpen(const struct stat& status);

} // namespace platform
