// SPDX-License-Identifier: MIT
#include "platform/ByteFile.h"

#include "platform/EntryStatus_Posix.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace platform {

namespace {

int Descriptor(std::intptr_t native) {
    return static_cast<int>(native);
}

int OpenForReading(const std::string& name, int flags, int& error) {
    int descriptor;
    do
        descriptor = open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | flags);
    while (descriptor < 0 && errno == EINTR);
    error = descriptor < 0 ? errno : 0;
    return descriptor;
}

bool IsNullDevice(const struct stat& status) {
    struct stat null;
    return S_ISCHR(status.st_mode) && stat("/dev/null", &null) == 0 && null.st_rdev == status.st_rdev;
}

// A directory is none, but its reading tells that better.
bool MayNeverEnd(const struct stat& status) {
    return !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode) && !S_ISBLK(status.st_mode) &&
           !IsNullDevice(status);
}

} // namespace

ByteFile& ByteFile::operator=(ByteFile&& other) noexcept {
    std::swap(native_, other.native_);
    std::swap(owned_, other.owned_);
    return *this;
}

ByteFile ByteFile::Open(const std::string& name, int& error) {
    return ByteFile(OpenForReading(name, 0, error), true);
}

ByteFile ByteFile::OpenStored(const std::string& name, int& error) {
    ByteFile file(OpenForReading(name, O_NONBLOCK, error), true);
    struct stat status;
    if (error != 0)
        return file;
    if (fstat(Descriptor(file.native_), &status) != 0)
        error = errno;
    else if (MayNeverEnd(status))
        error = ENOTSUP;
    if (error != 0)
        file.Close();
    return file;
}

ByteFile ByteFile::StandardInput() {
    return ByteFile(STDIN_FILENO, false);
}

std::ptrdiff_t ByteFile::Read(void* buffer, std::size_t capacity, int& error) {
    ssize_t count;
    do
        count = read(Descriptor(native_), buffer, capacity);
    while (count < 0 && errno == EINTR);
    if (count < 0)
        error = errno;
    return count;
}

ByteFile::Kind ByteFile::Look(std::int64_t& sizeLeft, EntryStatus* status) const {
    struct stat found;
    sizeLeft = -1;
    if (fstat(Descriptor(native_), &found) != 0)
        return Kind::other;
    if (status != nullptr)
        *status = StatusOf(found);
    if (!S_ISREG(found.st_mode))
        return Kind::other;
    const off_t position = owned_ ? 0 : lseek(Descriptor(native_), 0, SEEK_CUR);
    if (position >= 0 && position <= found.st_size)
        sizeLeft = found.st_size - position;
    return Kind::regular;
}

void ByteFile::Close() {
    if (owned_ && native_ != -1)
        close(Descriptor(native_));
    native_ = -1;
}

} // namespace platform
