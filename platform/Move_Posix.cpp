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

MoveResult ResultOf(int error, const char* to) {
    if (error == 0)
        return MoveResult::moved;
    if (error == EEXIST)
        return IsLink(to) ? MoveResult::nameBlocked : MoveResult::nameTaken;
    return MoveResult::failed;
}

bool IsInSystemDirectory(const char* path) {
    char resolved[PATH_MAX];
    return realpath(SplitNativePath(path).parent, resolved) == nullptr || BelongsToSystem(resolved);
}

// Regular files, none that is still open. A link stays: with the name of a digest it would stand in the way of the
// very file that it leads to, which `-renamedel` would delete for it.
bool MayGo(const char* path) {
    struct stat status;
    return lstat(path, &status) == 0 && S_ISREG(status.st_mode) && !IsHeldOpen(path, FileIdentity(status)) &&
           !IsInSystemDirectory(path);
}

} // namespace

MoveResult MoveWithoutReplacing(const wchar_t* from, const wchar_t* to) {
    const NativePath nativeFrom(from);
    const NativePath nativeTo(to);
    if (!MayGo(nativeFrom))
        return MoveResult::stays;
    const int error = RenameWithoutReplacing(nativeFrom, nativeTo);
    return ResultOf(error == EXDEV ? MoveByCopy(nativeFrom, nativeTo) : error, nativeTo);
}

bool RemoveFile(const wchar_t* path) {
    const NativePath native(path);
    return MayGo(native) && moveCalls.unlink(native) == 0;
}

} // namespace platform
