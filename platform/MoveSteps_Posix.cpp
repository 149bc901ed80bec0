// SPDX-License-Identifier: MIT
#include "platform/MoveSteps_Posix.h"

#include "platform/MoveCalls_Posix.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

bool IsWithin(std::string_view path, std::string_view directory) {
    return path.starts_with(directory) && (path.size() == directory.size() || path[directory.size()] == '/');
}

bool Exists(const char* path) {
    struct stat status;
    return lstat(path, &status) == 0;
}

bool IsSameDirectory(const char* a, const char* b) {
    struct stat statusA;
    struct stat statusB;
    return stat(a, &statusA) == 0 && stat(b, &statusB) == 0 && FileIdentity(statusA) == FileIdentity(statusB);
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

// For file systems without hard links: only the creation of a file is sure not to replace anything there.
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
int RenameWithoutFlag(const char* from, const char* to) {
    struct stat status;
    if (Exists(to))
        return IsSameName(from, to) ? 0 : EEXIST;
    if (lstat(from, &status) != 0)
        return errno;
    if (moveCalls.link(from, to) == 0)
        return RemoveFirstName(from, to, FileIdentity(status));
    const int error = errno;
    return AllowsPlaceholder(error) ? MoveOverPlaceholder(from, to) : error;
}

} // namespace

SplitNativePath::SplitNativePath(const char* path) {
    const char* const separator = std::strrchr(path, '/');
    name = separator == nullptr ? path : separator + 1;
    const std::string_view before = separator == nullptr ? std::string_view(".")
                                    : separator == path  ? std::string_view("/")
                                                         : std::string_view(path, separator);
    parent[before.copy(parent, sizeof parent - 1)] = '\0';
}

bool BelongsToSystem(std::string_view directory) {
    return IsWithin(directory, "/proc") || (IsWithin(directory, "/dev") && !IsWithin(directory, "/dev/shm"));
}

bool IsLink(const char* path) {
    struct stat status;
    return lstat(path, &status) == 0 && S_ISLNK(status.st_mode);
}

bool Names(const char* path, const FileIdentity& file) {
    struct stat status;
    return lstat(path, &status) == 0 && FileIdentity(status) == file;
}

bool IsSameName(const char* from, const char* to) {
    struct stat status;
    if (lstat(from, &status) != 0 || !Names(to, FileIdentity(status)))
        return false;
    if (status.st_nlink == 1)
        return true;
    const SplitNativePath splitFrom(from);
    const SplitNativePath splitTo(to);
    return std::strcmp(splitFrom.name, splitTo.name) == 0 &&
           IsSameDirectory(splitFrom.parent, splitTo.parent);
}

int RenameWithoutReplacing(const char* from, const char* to) {
    if (moveCalls.renameNoReplace(from, to) == 0)
        return 0;
    switch (const int error = errno) {
    case EEXIST:
        return IsSameName(from, to) ? 0 : EEXIST;
    case EINVAL: // the file system or the kernel does not know the flag
    case ENOSYS:
    case EOPNOTSUPP:
        return RenameWithoutFlag(from, to);
    default:
        return error;
    }
}

} // namespace platform
