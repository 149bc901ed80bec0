// SPDX-License-Identifier: MIT
// The copy gets its name when it is complete. Were it written under the target's own name, a run
// killed in the middle would leave a part of the file under the digest of the whole, and the next
// run would take that for the file.
#include "platform/Descriptor_Posix.h"
#include "platform/MoveCalls_Posix.h"
#include "platform/MoveLocks_Posix.h"
#include "platform/MoveNames_Posix.h"
#include "platform/MoveSteps_Posix.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <limits>
#include <optional>
#include <unistd.h>

namespace platform {

namespace {

constexpr int noFile = -1;

// A new file in the target's directory, for nobody else to read. It goes away with the object,
// unless it has got the target's name.
class NewFile {
  public:
    virtual ~NewFile() = default;

    explicit operator bool() const { return static_cast<bool>(descriptor_); }
    int Number() const { return descriptor_.Number(); }

    // For a caller who holds the locks of the target's directory. None: it cannot have a name.
    virtual std::optional<MoveResult> GetName(const char* target) = 0;

  protected:
    // What creates one beside the target, and writes a path that leads to it.
    using Creation = int(const char* target, char (&path)[PATH_MAX]);

    NewFile(Creation* create, const char* target) : descriptor_(create(target, path_)) {}

    char path_[PATH_MAX];
    Descriptor descriptor_; // last: its creation sets the path
};

// One without a name, of which nothing remains when the run is killed. Its only way to a name is by
// /proc.
class UnnamedFile : public NewFile {
  public:
    explicit UnnamedFile(const char* target) : NewFile(Create, target) {}

    std::optional<MoveResult> GetName(const char* target) override {
        const int error = moveCalls.nameUnnamed(path_, target) == 0 ? 0 : errno;
        if (error != 0 && error != EEXIST)
            return std::nullopt;
        return ResultOf(error, path_, target);
    }

  private:
    static int Create(const char* target, char (&path)[PATH_MAX]) {
        const int created = moveCalls.openUnnamed(SplitNativePath(target).parent);
        std::snprintf(path, sizeof path, "/proc/self/fd/%d", created);
        return created;
    }
};

// One with a temporary name, where the file system has no others.
class TemporaryFile : public NewFile {
  public:
    explicit TemporaryFile(const char* target) : NewFile(Create, target) {
        present_ = descriptor_ && fstat(Number(), &status_) == 0;
    }
    ~TemporaryFile() override {
        if (present_ && Names(path_, FileIdentity(status_)))
            moveCalls.unlink(path_);
    }

    std::optional<MoveResult> GetName(const char* target) override {
        if (!present_ || !descriptor_.Close())
            return std::nullopt;
        const auto result = RenameUnderLocks(path_, FileIdentity(status_), target);
        present_ = result != MoveResult::moved;
        return result;
    }

  private:
    static int Create(const char* target, char (&path)[PATH_MAX]) {
        const SplitNativePath split(target);
        constexpr unsigned attempts = 10; // a killed run may have left one behind
        for (unsigned i = 0; i < attempts; ++i) {
            const int length = std::snprintf(path, sizeof path, "%s/.fyrn-%ld-%u.tmp", split.parent,
                                             static_cast<long>(getpid()), i);
            if (length < 0 || static_cast<std::size_t>(length) >= sizeof path)
                return noFile;
            const int created = open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
            if (created != noFile || errno != EEXIST)
                return created;
        }
        return noFile;
    }

    struct stat status_ = {};
    bool present_ = false;
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

// Copies up to `count` bytes from one offset to the same one; fewer at the end of the original.
bool CopyRange(int from, int to, off_t offset, off_t count) {
    if (lseek(from, offset, SEEK_SET) != offset || lseek(to, offset, SEEK_SET) != offset)
        return false;
    char buffer[65536];
    while (count > 0) {
        const auto wanted = static_cast<std::size_t>(std::min<off_t>(count, sizeof buffer));
        const ssize_t got = read(from, buffer, wanted);
        if (got == 0)
            return true;
        if (got > 0 ? !WriteWhole(to, buffer, static_cast<std::size_t>(got)) : errno != EINTR)
            return false;
        count -= std::max<ssize_t>(got, 0);
    }
    return true;
}

// What has fewer blocks than its size takes has holes, which the copy is to have, too. No other
// file is asked for them: what lies behind its last data is read anyway, in case the answer or the
// size is wrong.
bool CopyBytes(int from, const struct stat& status, int to) {
    constexpr off_t blockSize = 512;
    const bool hasHoles = status.st_blocks < status.st_size / blockSize;
    off_t offset = 0;
    while (hasHoles && offset < status.st_size) {
        const off_t data = lseek(from, offset, SEEK_DATA);
        if (data < 0 && errno == ENXIO) { // a hole up to the end
            offset = status.st_size;
            break;
        }
        const off_t hole = data < 0 ? -1 : lseek(from, data, SEEK_HOLE);
        if (hole < 0)
            break;
        if (!CopyRange(from, to, data, hole - data))
            return false;
        offset = hole;
    }
    return CopyRange(from, to, offset, std::numeric_limits<off_t>::max()) &&
           (!hasHoles || ftruncate(to, status.st_size) == 0);
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
bool Copy(int from, const struct stat& status, int to) {
    return CopyBytes(from, status, to) && CopyAttributes(status, to) && moveCalls.fsync(to) == 0;
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

bool IsThis(const Descriptor& descriptor, const FileIdentity& file) {
    struct stat status;
    return fstat(descriptor.Number(), &status) == 0 && S_ISREG(status.st_mode) &&
           FileIdentity(status) == file;
}

// Under the locks no other run removes the copy because of its original, which is removed itself.
std::optional<MoveResult> Exchange(const char* from, const FileIdentity& file, NewFile& copy,
                                   const char* to) {
    const DirectoryLocks locks(from, to);
    if (!locks || !Names(from, file))
        return MoveResult::stays;
    const std::optional<MoveResult> result = copy.GetName(to);
    if (result == MoveResult::moved && SyncDirectoryOf(to) && Names(from, file))
        moveCalls.unlink(from);
    return result;
}

// None: this is not the kind of file that can be made there.
std::optional<MoveResult> MoveInto(NewFile&& copy, const Descriptor& original, const char* from,
                                   const char* to) {
    struct stat status;
    if (!copy)
        return std::nullopt;
    if (fstat(original.Number(), &status) != 0 || !Copy(original.Number(), status, copy.Number()))
        return MoveResult::failed;
    if (!IsUnchanged(original.Number(), status))
        return MoveResult::stays;
    return Exchange(from, FileIdentity(status), copy, to);
}

} // namespace

MoveResult MoveByCopy(const char* from, const FileIdentity& file, const char* to) {
    if (Exists(to))
        return ResultOfHolder(from, to);
    if (errno == ENAMETOOLONG)
        return MoveResult::failed; // which a copy would show only when it is complete
    const Descriptor original(OpenOriginal(from));
    if (!original)
        return errno == ENOENT ? MoveResult::stays : MoveResult::failed;
    if (!IsThis(original, file))
        return MoveResult::stays;
    if (const auto result = MoveInto(UnnamedFile(to), original, from, to))
        return *result;
    return MoveInto(TemporaryFile(to), original, from, to).value_or(MoveResult::failed);
}

} // namespace platform
