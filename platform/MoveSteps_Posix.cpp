// SPDX-License-Identifier: MIT
//
// Two runs may meet at one name. Where the system renames without replacing in one step, each sees
// the other's file or none. Elsewhere only the creation of a file is sure not to replace anything,
// and a placeholder stands under the digest name for a moment: a file that is not there yet, for
// which nothing may be deleted.
//
// Nothing is: placeholders come and go, and files are removed, under the locks of both directories,
// so that no run that removes sees a living one. One that a killed run left behind is empty, on a
// file system without links, and no file with content is removed for such a one. The locks also
// keep two runs with different digests from removing each of two equal files for the other's sake.
#include "platform/MoveSteps_Posix.h"

#include "platform/MoveCalls_Posix.h"
#include "platform/MoveLocks_Posix.h"
#include "platform/MoveNames_Posix.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

// Whether the file system refuses a second name for a file. Only there placeholders are made.
bool KnowsNoLinks(const char* path) {
    char probe[PATH_MAX];
    const int length = std::snprintf(probe, sizeof probe, "%s/.fyrn-%ld-link.tmp",
                                     SplitNativePath(path).parent, static_cast<long>(getpid()));
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof probe || moveCalls.link(path, probe) != 0)
        return true;
    moveCalls.unlink(probe);
    return false;
}

// Whether what is at `to` may be a placeholder that is not for `from`. An empty file has an empty
// one's name by right.
bool MayBePlaceholder(const char* from, const char* to) {
    struct stat statusFrom;
    struct stat statusTo;
    return lstat(to, &statusTo) == 0 && S_ISREG(statusTo.st_mode) && statusTo.st_size == 0 &&
           lstat(from, &statusFrom) == 0 && statusFrom.st_size != 0 && KnowsNoLinks(to);
}

// No file is missing where the target is what does not exist: no name, or no directory for it.
bool HasPlaceFor(const char* to) {
    const SplitNativePath split(to);
    return *split.name != '\0' && Exists(split.parent);
}

bool IsFlagUnknown(int error) {
    return error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
}

// Takes the first of a file's two names away. Whatever somebody else put under either name in the meantime stays.
int RemoveFirstName(const char* from, const char* to, const FileIdentity& file) {
    if (!Names(from, file) || moveCalls.unlink(from) == 0)
        return 0;
    const int error = errno;
    if (Names(from, file) && Names(to, file))
        moveCalls.unlink(to);
    return error;
}

// Creates an empty file, which tells where to look for it; 0 or the error number.
int CreatePlaceholder(const char* path, struct stat& status) {
    const int descriptor = open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (descriptor == -1)
        return errno;
    const int error = fstat(descriptor, &status) == 0 ? 0 : errno;
    close(descriptor);
    return error;
}

bool IsUntouched(const char* path, const FileIdentity& placeholder) {
    struct stat status;
    return lstat(path, &status) == 0 && FileIdentity(status) == placeholder && status.st_size == 0;
}

int MoveOverPlaceholder(const char* from, const char* to) {
    struct stat status;
    if (const int error = CreatePlaceholder(to, status); error != 0)
        return error;
    const FileIdentity placeholder(status);
    if (!IsUntouched(to, placeholder))
        return EEXIST;
    if (moveCalls.rename(from, to) == 0)
        return 0;
    const int error = errno;
    if (IsUntouched(to, placeholder))
        moveCalls.unlink(to);
    return error;
}

// Whether a failure to link says nothing against the move: the file system has no links, or not for this file.
bool AllowsPlaceholder(int linkError) {
    return linkError != EEXIST && linkError != EXDEV && linkError != ENOENT;
}

// A second name never replaces anything; then the first one goes.
int RenameInSteps(const char* from, const FileIdentity& file, const char* to) {
    if (Exists(to))
        return EEXIST;
    if (moveCalls.link(from, to) == 0)
        return RemoveFirstName(from, to, file);
    const int error = errno;
    return AllowsPlaceholder(error) ? MoveOverPlaceholder(from, to) : error;
}

int RenameInOneStep(const char* from, const char* to) {
    return moveCalls.renameNoReplace(from, to) == 0 ? 0 : errno;
}

} // namespace

MoveResult ResultOfHolder(const char* from, const char* to) {
    if (IsSameName(from, to))
        return MoveResult::moved;
    return IsLink(to) || MayBePlaceholder(from, to) ? MoveResult::nameBlocked : MoveResult::nameTaken;
}

std::optional<MoveResult> ResultOf(int error, const char* from, const char* to) {
    switch (error) {
    case 0:
        return MoveResult::moved;
    case EEXIST:
        return ResultOfHolder(from, to);
    case EXDEV:
        return std::nullopt;
    case ENOENT: // another run may have moved the file
        return HasPlaceFor(to) ? MoveResult::stays : MoveResult::failed;
    default:
        return MoveResult::failed;
    }
}

std::optional<MoveResult> RenameUnderLocks(const char* from, const FileIdentity& file, const char* to) {
    if (!Names(from, file))
        return MoveResult::stays;
    const int error = RenameInOneStep(from, to);
    return ResultOf(IsFlagUnknown(error) ? RenameInSteps(from, file, to) : error, from, to);
}

std::optional<MoveResult> Rename(const char* from, const FileIdentity& file, const char* to) {
    const int error = RenameInOneStep(from, to);
    if (!IsFlagUnknown(error) && !(error == EEXIST && MayBePlaceholder(from, to)))
        return ResultOf(error, from, to);
    const DirectoryLocks locks(from, to);
    return locks ? RenameUnderLocks(from, file, to) : MoveResult::stays;
}

} // namespace platform
