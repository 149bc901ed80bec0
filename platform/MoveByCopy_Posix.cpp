// SPDX-License-Identifier: MIT
// The copy is written under a temporary name beside the target. Were it written under the target's own name, a
// run killed in the middle would leave a part of the file under the digest of the whole, and the next run
// would take that for the file.
#include "platform/MoveCalls_Posix.h"
#include "platform/MoveSteps_Posix.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr int noFile = -1;

// Closes a descriptor when it goes out of scope.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    explicit operator bool() const { return number_ != noFile; }
    int Number() const { return number_; }

    bool Close() {
        const int number = number_;
        number_ = noFile;
        return number == noFile || close(number) == 0;
    }

  private:
    int number_;
};

// A new file beside the target, which goes away with the object unless it has got the target's name.
class TemporaryFile {
  public:
    explicit TemporaryFile(const char* target) : descriptor_(Create(target)) {
        if (descriptor_)
            fstat(descriptor_.Number(), &status_);
    }
    ~TemporaryFile() {
        if (present_ && Names(path_, FileIdentity(status_)))
            moveCalls.unlink(path_);
    }

    explicit operator bool() const { return static_cast<bool>(descriptor_); }
    int Number() const { return descriptor_.Number(); }
    bool Close() { return descriptor_.Close(); }

    // 0 or the error number.
    int BecomeTarget(const char* target) {
        const int error = RenameWithoutReplacing(path_, target);
        present_ = present_ && error != 0;
        return error;
    }

  private:
    int Create(const char* target) {
        const SplitNativePath split(target);
        constexpr unsigned attempts = 10; // a killed run may have left one behind
        for (unsigned i = 0; i < attempts && !present_; ++i) {
            const int length = std::snprintf(path_, sizeof path_, "%s/.fyrn-%ld-%u.tmp", split.parent,
                                             static_cast<long>(getpid()), i);
            if (length < 0 || static_cast<std::size_t>(length) >= sizeof path_)
                return noFile;
            const int created = open(path_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
            if (created != noFile) {
                present_ = true;
                return created;
            }
        }
        return noFile;
    }

    char path_[PATH_MAX];
    bool present_ = false;
    struct stat status_ = {};
    Descriptor descriptor_; // last: its creation sets the path
};

bool WriteWhole(int descriptor, const char* bytes, std::size_t count) {
    while (count > 0) {
        const ssize_t written = moveCalls.write(descriptor, bytes, count);
        if (written > 0) {
            bytes += written;
            count -= static_cast<std::size_t>(written);
        } else if (written == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool CopyBytes(int from, int to) {
    char buffer[65536];
    for (;;) {
        const ssize_t count = read(from, buffer, sizeof buffer);
        if (count == 0)
            return true;
        if (count > 0 ? !WriteWhole(to, buffer, static_cast<std::size_t>(count)) : errno != EINTR)
            return false;
    }
}

// The owner is kept where that is permitted. Without the owner, the rights of "set user id" and its like would
// be given to a program in another's name.
bool CopyAttributes(const struct stat& original, int to) {
    const bool ownerKept = moveCalls.fchown(to, original.st_uid, original.st_gid) == 0;
    const timespec times[] = {original.st_atim, original.st_mtim};
    return fchmod(to, original.st_mode & (ownerKept ? 07777u : 0777u)) == 0 && futimens(to, times) == 0;
}

bool IsUnchanged(int descriptor, const struct stat& before) {
    struct stat now;
    return fstat(descriptor, &now) == 0 && now.st_size == before.st_size &&
           now.st_mtim.tv_sec == before.st_mtim.tv_sec && now.st_mtim.tv_nsec == before.st_mtim.tv_nsec;
}

// A complete copy, on the disk.
bool Copy(int from, const struct stat& status, TemporaryFile& copy) {
    return CopyBytes(from, copy.Number()) && CopyAttributes(status, copy.Number()) &&
           moveCalls.fsync(copy.Number()) == 0 && IsUnchanged(from, status) && copy.Close();
}

// Writes the target's name to the disk. False only where that was tried and failed: some file systems offer no
// such thing for directories, and some directories can be written but not read.
bool SyncDirectoryOf(const char* path) {
    const Descriptor directory(open(SplitNativePath(path).parent, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return !directory || moveCalls.fsync(directory.Number()) == 0 || errno != EIO;
}

int OpenOriginal(const char* path) {
    return open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

} // namespace

int MoveByCopy(const char* from, const char* to) {
    struct stat status;
    if (lstat(to, &status) == 0)
        return IsSameName(from, to) ? 0 : EEXIST;
    const Descriptor original(OpenOriginal(from));
    if (!original || fstat(original.Number(), &status) != 0 || !S_ISREG(status.st_mode))
        return EIO;
    TemporaryFile copy(to);
    if (!copy || !Copy(original.Number(), status, copy))
        return EIO;
    if (const int error = copy.BecomeTarget(to); error != 0)
        return error;
    if (SyncDirectoryOf(to) && Names(from, FileIdentity(status)))
        moveCalls.unlink(from);
    return 0;
}

} // namespace platform
