// SPDX-License-Identifier: MIT
// The system's move never replaces a file unless it is told to, takes a file that already bears the name for
// moved, copies to another volume, and like its delete refuses a file that is still open.
#include "platform/File.h"

#include <windows.h>

namespace platform {

namespace {

bool IsFile(const wchar_t* path) {
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

} // namespace

bool MoveWithoutReplacing(const wchar_t* from, const wchar_t* to) {
    return IsFile(from) && MoveFileExW(from, to, MOVEFILE_COPY_ALLOWED) != 0;
}

bool RemoveFile(const wchar_t* path) {
    return DeleteFileW(path) != 0;
}

} // namespace platform
