// SPDX-License-Identifier: MIT
#include "platform/NewFile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

constexpr mode_t newFileMode = 0666; // less what the user's mask takes away

// What a link of this name leads to, so that the link stays and its target is replaced.
std::string Resolved(const std::string& name) {
    char* const resolved = realpath(name.c_str(), nullptr);
    if (resolved == nullptr)
        return name;
    std::string result = resolved;
    std::free(resolved);
    return result;
}

std::string DirectoryOf(const std::string& name) {
    const std::size_t slash = name.rfind('/');
    return slash == std::string::npos ? "." : name.substr(0, slash + 1);
}

// Hidden, and short enough for any name that is itself allowed.
std::string TemporaryPattern(const std::string& name) {
    return DirectoryOf(name) + "/" + std::string(temporaryPrefix) + "XXXXXX";
}

void GiveUsualMode(int descriptor) {
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(descriptor, newFileMode & ~mask);
}

std::string LinkToDescriptor(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

} // namespace

NewFile::NewFile(NewFile&& other) noexcept
    : native_(std::exchange(other.native_, -1)), name_(std::move(other.name_)),
      temporary_(std::move(other.temporary_)), direct_(other.direct_) {}

NewFile::~NewFile() {
    if (native_ != -1)
        close(static_cast<int>(native_));
    if (native_ != -1 && !temporary_.empty())
        unlink(temporary_.c_str());
}

int NewFile::Create(const std::string& name) {
    struct stat status;
    name_ = Resolved(name);
    if (stat(name_.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        direct_ = true;
        native_ = open(name_.c_str(), O_WRONLY | O_CLOEXEC);
        return native_ == -1 ? errno : 0;
    }
#ifdef O_TMPFILE
    // Nothing is left behind then, however the run ends.
    native_ = open(DirectoryOf(name_).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, newFileMode);
    if (native_ != -1)
        return 0;
#endif
    return CreateNamed();
}

int NewFile::CreateNamed() {
    std::string pattern = TemporaryPattern(name_);
    native_ = mkostemp(pattern.data(), O_CLOEXEC);
    if (native_ == -1)
        return errno;
    temporary_ = pattern;
    GiveUsualMode(static_cast<int>(native_));
    return 0;
}

// The owner first, since giving a file away takes some of its rights.
void NewFile::TakeRightsOf(const std::string& name) {
    struct stat status;
    const int descriptor = static_cast<int>(native_);
    if (direct_ || stat(name.c_str(), &status) != 0)
        return;
    constexpr uid_t sameOwner = static_cast<uid_t>(-1);
    if (fchown(descriptor, status.st_uid, status.st_gid) != 0 &&
        fchown(descriptor, sameOwner, status.st_gid) != 0)
        status.st_mode &= ~static_cast<mode_t>(S_ISUID | S_ISGID);
    fchmod(descriptor, status.st_mode & 07777);
}

int NewFile::Write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(static_cast<int>(native_), bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

// A file without a name can be linked to a new one only; a second step then replaces what is there.
int NewFile::Complete() {
    const int descriptor = static_cast<int>(native_);
    if (!direct_ && fsync(descriptor) != 0)
        return errno;
    if (!direct_ && temporary_.empty()) {
        std::string pattern;
        int status;
        do {
            pattern = TemporaryPattern(name_);
            const int reserved = mkostemp(pattern.data(), O_CLOEXEC);
            if (reserved == -1)
                return errno;
            close(reserved);
            unlink(pattern.c_str());
            status = linkat(AT_FDCWD, LinkToDescriptor(descriptor).c_str(), AT_FDCWD, pattern.c_str(),
                            AT_SYMLINK_FOLLOW);
        } while (status != 0 && errno == EEXIST);
        if (status != 0)
            return errno;
        temporary_ = pattern;
    }
    if (!direct_ && rename(temporary_.c_str(), name_.c_str()) != 0)
        return errno;
    temporary_.clear();
    native_ = -1;
    return close(descriptor) == 0 ? 0 : errno;
}

FileIdentity NewFile::Identity() const {
    struct stat status;
    if (fstat(static_cast<int>(native_), &status) != 0)
        return {};
    return {status.st_dev, status.st_ino};
}

} // namespace platform
