// SPDX-License-Identifier: MIT
// Moving and removing files without ever replacing or losing one.
#include "platform/File.h"

#include "platform/CopyFile_Posix.h"
#include "platform/FileIdentity_Posix.h"
#include "platform/MoveSteps_Posix.h"
#include "platform/NativePath_Posix.h"
#include "platform/OpenFiles_Posix.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

int RenameNoReplace(const char* from, const char* to) {
    return renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
}

} // namespace

MoveCalls moveCalls = {RenameNoReplace, link};

namespace {

std::string_view LastComponent(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

std::string ParentOf(std::string_view path) {
    const std::size_t length = path.rfind('/') + 1;
    return length == 0 ? "." : std::string(path.substr(0, length));
}

// Whether both paths are one directory entry, however they are written.
bool IsSameEntry(const char* a, const char* b) {
    struct stat parentOfA;
    struct stat parentOfB;
    return LastComponent(a) == LastComponent(b) && stat(ParentOf(a).c_str(), &parentOfA) == 0 &&
           stat(ParentOf(b).c_str(), &parentOfB) == 0 && FileIdentity(parentOfA) == FileIdentity(parentOfB);
}

// Whether the file already bears the new name. Another link to the same file is a file in the way like any other.
bool AlreadyBearsName(const char* from, const char* to) {
    struct stat source;
    struct stat target;
    return lstat(from, &source) == 0 && lstat(to, &target) == 0 &&
           FileIdentity(source) == FileIdentity(target) && (source.st_nlink == 1 || IsSameEntry(from, to));
}

bool IsMissing(const char* path) {
    struct stat status;
    return lstat(path, &status) != 0 && errno == ENOENT;
}

// Takes the new name with an empty file of our own and renames over that.
bool MoveOverPlaceholder(const char* from, const char* to) {
    const int placeholder = open(to, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (placeholder == -1)
        return false;
    close(placeholder);
    if (rename(from, to) == 0)
        return true;
    unlink(to);
    return false;
}

bool SupportsNoLinks(int error) {
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK || error == EINVAL;
}

// For file systems that cannot rename without replacing: a second link, which fails where the name is taken, and
// then the end of the first.
bool MoveByLink(const char* from, const char* to) {
    if (AlreadyBearsName(from, to))
        return true;
    if (!IsMissing(to))
        return false;
    if (moveCalls.link(from, to) != 0)
        return SupportsNoLinks(errno) && MoveOverPlaceholder(from, to);
    if (unlink(from) == 0)
        return true;
    unlink(to);
    return false;
}

bool MoveNative(const char* from, const char* to) {
    if (moveCalls.renameNoReplace(from, to) == 0)
        return true;
    switch (errno) {
    case EEXIST:
        return AlreadyBearsName(from, to);
    case EINVAL:
    case ENOSYS:
    case EOPNOTSUPP:
        return MoveByLink(from, to);
    case EXDEV:
        return MoveByCopy(from, to);
    default:
        return false;
    }
}

bool LiesUnder(std::string_view path, std::string_view directory) {
    return path.starts_with(directory);
}

// The system's own trees, where a name is not what it seems: removing /dev/stdin removes a system's device link.
bool IsSystemPath(const char* path) {
    char resolved[PATH_MAX];
    if (realpath(ParentOf(path).c_str(), resolved) == nullptr)
        return true;
    const std::string parent = std::string(resolved) + '/';
    return (LiesUnder(parent, "/dev/") && !LiesUnder(parent, "/dev/shm/")) || LiesUnder(parent, "/proc/");
}

// A regular file or a link to one that is not open here.
bool MayLeaveItsPlace(const char* path) {
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode) && !IsHeldOpen(status) && !IsSystemPath(path);
}

} // namespace

bool MoveWithoutReplacing(const wchar_t* from, const wchar_t* to) {
    const NativePath nativeFrom(from);
    const NativePath nativeTo(to);
    return MayLeaveItsPlace(nativeFrom) && MoveNative(nativeFrom, nativeTo);
}

bool RemoveFile(const wchar_t* path) {
    const NativePath native(path);
    return MayLeaveItsPlace(native) && unlink(native) == 0;
}

} // namespace platform
