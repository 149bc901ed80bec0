// SPDX-License-Identifier: MIT
// Which files are moved and removed at all.
#include "platform/File.h"

#include "platform/MoveCalls_Posix.h"
#include "platform/MoveLocks_Posix.h"
#include "platform/MoveNames_Posix.h"
#include "platform/MoveSteps_Posix.h"
#include "platform/NativePath_Posix.h"
#include "platform/OpenFiles_Posix.h"

#include <cstdlib>

namespace platform {

namespace {

bool IsInSystemDirectory(const char* path) {
    char resolved[PATH_MAX];
    return realpath(SplitNativePath(path).parent, resolved) == nullptr || BelongsToSystem(resolved);
}

// Regular files, none that is still open, and none that was put in the place of the one that was
// read. A link stays: with the name of a digest it would stand in the way of the very file that it
// leads to, which `-renamedel` would delete for it.
std::optional<FileIdentity> FileThatMayGo(const char* path) {
    struct stat status;
    if (lstat(path, &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    const FileIdentity file(status);
    if (IsHeldOpen(path, file) || WasAnotherWhenOpened(path, file) || IsInSystemDirectory(path))
        return std::nullopt;
    return file;
}

// Where the target is on another file system, only what has its name is of interest.
MoveResult RenameOrSeeHolder(const char* from, const FileIdentity& file, const char* to) {
    if (const auto result = RenameUnderLocks(from, file, to))
        return *result;
    return Exists(to) ? ResultOfHolder(from, to) : MoveResult::stays;
}

} // namespace

MoveResult MoveWithoutReplacing(const wchar_t* from, const wchar_t* to) {
    const NativePath nativeFrom(from);
    const NativePath nativeTo(to);
    const std::optional<FileIdentity> file = FileThatMayGo(nativeFrom);
    if (!file)
        return MoveResult::stays;
    const std::optional<MoveResult> result = Rename(nativeFrom, *file, nativeTo);
    return result ? *result : MoveByCopy(nativeFrom, *file, nativeTo);
}

bool RemoveInFavourOf(const wchar_t* path, const wchar_t* other) {
    const NativePath nativePath(path);
    const NativePath nativeOther(other);
    const DirectoryLocks locks(nativePath, nativeOther);
    const std::optional<FileIdentity> file = FileThatMayGo(nativePath);
    return locks && file && RenameOrSeeHolder(nativePath, *file, nativeOther) == MoveResult::nameTaken &&
           moveCalls.unlink(nativePath) == 0;
}

bool RemoveFile(const wchar_t* path) {
    const NativePath native(path);
    return FileThatMayGo(native) && moveCalls.unlink(native) == 0;
}

} // namespace platform
