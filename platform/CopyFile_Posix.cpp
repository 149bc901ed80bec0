// SPDX-License-Identifier: MIT
#include "platform/CopyFile_Posix.h"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr int noDescriptor = -1;
constexpr std::size_t pieceSize = 65536;

bool WriteWhole(int descriptor, const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = write(descriptor, bytes, count);
        if (written == -1 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

bool CopyContent(int from, int to) {
    char piece[pieceSize];
    for (;;) {
        const ssize_t count = read(from, piece, sizeof piece);
        if (count == 0)
            return true;
        if (count > 0 ? !WriteWhole(to, piece, static_cast<std::size_t>(count)) : errno != EINTR)
            return false;
    }
}

bool IsSameTime(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

// Whether nobody has written to the file since `before`.
bool IsUnchanged(int descriptor, const struct stat& before) {
    struct stat now;
    return fstat(descriptor, &now) == 0 && now.st_size == before.st_size &&
           IsSameTime(now.st_mtim, before.st_mtim);
}

// The owner can be given only by those who may; the rest must succeed.
bool CopyAttributes(int to, const struct stat& source) {
    const timespec times[] = {source.st_atim, source.st_mtim};
    [[maybe_unused]] const int ownerIgnored = fchown(to, source.st_uid, source.st_gid);
    return fchmod(to, source.st_mode & 07777) == 0 && futimens(to, times) == 0;
}

bool CopyAll(int from, int to) {
    struct stat source;
    return fstat(from, &source) == 0 && S_ISREG(source.st_mode) && CopyContent(from, to) &&
           CopyAttributes(to, source) && fsync(to) == 0 && IsUnchanged(from, source);
}

// Copies to a file that does not exist yet; what is incomplete is removed again.
bool CopyToNewFile(int from, const char* path) {
    const int to = open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (to == noDescriptor)
        return false;
    const bool copied = CopyAll(from, to);
    if (close(to) == 0 && copied)
        return true;
    unlink(path);
    return false;
}

// Writes the directory's new entry to the medium, as far as the file system does that.
void SyncParent(std::string_view path) {
    const std::size_t length = path.rfind('/') + 1;
    const std::string parent = length == 0 ? "." : std::string(path.substr(0, length));
    const int descriptor = open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor != noDescriptor) {
        fsync(descriptor);
        close(descriptor);
    }
}

} // namespace

bool MoveByCopy(const char* from, const char* to) {
    const int source = open(from, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (source == noDescriptor)
        return false;
    const bool copied = CopyToNewFile(source, to);
    close(source);
    if (copied) {
        SyncParent(to);
        unlink(from);
    }
    return copied;
}

} // namespace platform
