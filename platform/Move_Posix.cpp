// SPDX-License-Identifier: MIT
// Which files are moved and removed at all.
#include "platform/File.h"

#include "platform/MoveCalls_Posix.h"
#include "platform/MoveSteps_Posix.h"
#include "platform/NativePath_Posix.h"
#include "platform/OpenFiles_Posix.h"

#include <cerrno>
#include <cstdlib>

namespace platform {

namespace {

bool IsInSystemDirectory(const char* path) {
    char resolved[PATH_MAX];
    return realpath(SplitNativePath(path).parent, resolved) == nullptr || BelongsToSystem(resolved);
}

// Regular files and links to them, none that is still open.
bool MayGo(const char* path) {
    struct stat entry;
    struct stat file;
    return lstat(path, &entry) == 0 && (S_ISREG(entry.st_mode) || S_ISLNK(entry.st_mode)) &&
           stat(path, &file) == 0 && S_ISREG(file.st_mode) && !IsHeldOpen(path, FileIdentity(file)) &&
           !IsInSystemDirectory(path);
}

} // namespace

bool MoveWithoutReplacing(const wchar_t* from, const wchar_t* to) {
    const NativePath nativeFrom(from);
    const NativePath nativeTo(to);
    if (!MayGo(nativeFrom))
        return false;
    const int error = RenameWithoutReplacing(nativeFrom, nativeTo);
    return error == 0 || (error == EXDEV && MoveByCopy(nativeFrom, nativeTo));
}

bool RemoveFile(const wchar_t* path) {
    const NativePath native(path);
    return MayGo(native) && moveCalls.unlink(native) == 0;
}

} // namespace platform
