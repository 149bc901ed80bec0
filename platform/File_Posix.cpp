// SPDX-License-Identifier: MIT
// Reading files: which may be opened, and how without ever waiting for a file that is not what it was.
#include "platform/File.h"

#include "platform/FileIdentity_Posix.h"
#include "platform/NativePath_Posix.h"
#include "platform/OpenFiles_Posix.h"
#include "platform/Process.h"
#include "platform/ReadAhead.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr int noFile = -1;

bool specialFilesAllowed = true;

// Pipes that were opened in this run: what was read from one is gone, a second digest would be another one.
std::vector<FileIdentity> pipesRead;

bool WasRead(const struct stat& pipe) {
    return std::find(pipesRead.begin(), pipesRead.end(), FileIdentity(pipe)) != pipesRead.end();
}

int Open(const char* path, int flags) {
    int descriptor;
    do
        descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | flags);
    while (descriptor == noFile && errno == EINTR);
    return descriptor;
}

int CloseAndFail(int descriptor) {
    close(descriptor);
    return noFile;
}

bool NamesRegularFile(const char* path) {
    struct stat status;
    return stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

// Whether a failure says nothing about the file but much about the state of the system.
bool IsSystemTrouble(int error) {
    return error == EMFILE || error == ENFILE || error == ENOMEM || error == EIO;
}

// A file that could not be opened for such a reason is still there when its turn to be renamed by a stale digest
// comes, and would be lost under it.
int FailToOpen(const char* path) {
    if (IsSystemTrouble(errno))
        PinFile(path);
    return noFile;
}

// O_NONBLOCK keeps the opening of a pipe from waiting for a writer. It also fails where another process
// holds a lease on a regular file, which that process gives up when it is waited for.
int OpenWithoutWaiting(const char* path) {
    const int descriptor = Open(path, O_NONBLOCK);
    if (descriptor != noFile)
        return descriptor;
    if (errno == EWOULDBLOCK && NamesRegularFile(path))
        return Open(path, 0);
    return FailToOpen(path);
}

int OpenRegular(const char* path, struct stat& status) {
    const int descriptor = OpenWithoutWaiting(path);
    if (descriptor == noFile)
        return noFile;
    if (fstat(descriptor, &status) != 0) {
        PinFile(path);
        return CloseAndFail(descriptor);
    }
    return S_ISREG(status.st_mode) ? descriptor : CloseAndFail(descriptor);
}

// Waits for a pipe's writer, as every reader of pipes does. Before anybody waits, what was printed is passed on.
int OpenSpecial(const char* path, struct stat& status) {
    FlushStandardOutput();
    if (FateOfStandardOutput() == OutputFate::Unread)
        return noFile;
    const int descriptor = Open(path, 0);
    if (descriptor == noFile)
        return noFile;
    if (fstat(descriptor, &status) != 0 || S_ISDIR(status.st_mode))
        return CloseAndFail(descriptor);
    if (S_ISFIFO(status.st_mode))
        pipesRead.emplace_back(status);
    return descriptor;
}

int OpenAny(const char* path, struct stat& status) {
    if (stat(path, &status) != 0)
        return FailToOpen(path);
    if (S_ISDIR(status.st_mode) || S_ISSOCK(status.st_mode))
        return noFile;
    if (S_ISREG(status.st_mode))
        return OpenRegular(path, status);
    return S_ISFIFO(status.st_mode) && WasRead(status) ? noFile : OpenSpecial(path, status);
}

// One read that goes on after a signal.
ssize_t ReadSome(int descriptor, unsigned char* buffer, std::size_t capacity) {
    ssize_t count;
    do
        count = read(descriptor, buffer, capacity);
    while (count == -1 && errno == EINTR);
    return count;
}

ssize_t ReadTimed(int descriptor, unsigned char* buffer, std::size_t capacity) {
    const auto begin = std::chrono::steady_clock::now();
    const ssize_t count = ReadSome(descriptor, buffer, capacity);
    if (count > 0)
        readPace.Add(std::chrono::steady_clock::now() - begin, static_cast<std::size_t>(count));
    return count;
}

int DescriptorOf(const InputFile& file) {
    return static_cast<int>(file.native);
}

// A want of memory says nothing against the file either.
void MakeRoom(const char* path) {
    try {
        MakeRoomForOpenFile();
        pipesRead.reserve(pipesRead.size() + 1);
    } catch (const std::bad_alloc&) {
        PinPath(path);
        throw;
    }
}

} // namespace

InputFile OpenForReading(const wchar_t* path) {
    const NativePath native(path);
    MakeRoom(native);
    struct stat status;
    const int descriptor = specialFilesAllowed ? OpenAny(native, status) : OpenRegular(native, status);
    InputFile file;
    if (descriptor == noFile)
        return file;
    RememberOpenFile(descriptor, native, FileIdentity(status));
    file.native = descriptor;
    if (S_ISREG(status.st_mode)) {
        file.left = status.st_size;
        file.isTimed = readPace.IsTimed();
    }
    return file;
}

// A short count that ends at the size which the file had when it was opened is its end: a read of nothing more would
// cost a small file a twentieth of its time. Anything else, as where a size is wrong, ends by a read of nothing.
std::size_t ReadFully(InputFile& file, unsigned char* buffer, std::size_t capacity) {
    std::size_t total = 0;
    while (total < capacity && !file.ended) {
        const bool isTimed = std::exchange(file.isTimed, false);
        const ssize_t count =
            (isTimed ? ReadTimed : ReadSome)(DescriptorOf(file), buffer + total, capacity - total);
        if (count < 0)
            PinOpenFile(DescriptorOf(file)); // its digest is that of a part
        if (count > 0)
            total += static_cast<std::size_t>(count);
        file.left -= count;
        file.ended = count <= 0 || (total < capacity && file.left == 0);
    }
    return total;
}

std::int64_t SizeOf(InputFile& file) {
    struct stat status;
    if (fstat(DescriptorOf(file), &status) != 0 || !S_ISREG(status.st_mode))
        return 0;
    file.ended = lseek(DescriptorOf(file), 0, SEEK_SET) != 0;
    file.left = status.st_size;
    return status.st_size;
}

bool IsRegular(const InputFile& file) {
    struct stat status;
    return fstat(DescriptorOf(file), &status) == 0 && S_ISREG(status.st_mode);
}

void Close(InputFile& file) {
    ForgetOpenFile(DescriptorOf(file));
    close(DescriptorOf(file));
    file = InputFile{};
}

void AllowSpecialFiles(bool allow) {
    specialFilesAllowed = allow;
}

} // namespace platform
