// SPDX-License-Identifier: MIT
#include "platform/OpenFiles_Posix.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <optional>
#include <vector>

namespace platform {

namespace {

struct OpenFile {
    int descriptor;
    FileIdentity identity; // as it was opened: a failing system need not be asked again
};

std::vector<OpenFile> openFiles;
std::vector<FileIdentity> pinnedFiles;

// The last path that was pinned. One is enough: a file is moved right after it was read.
char pinnedPath[PATH_MAX] = "";

// The last path that was opened, and what it named.
char lastPath[PATH_MAX] = "";
std::optional<FileIdentity> lastFile;

void Copy(const char* path, char (&copy)[PATH_MAX]) {
    if (const std::size_t length = std::strlen(path); length < sizeof copy)
        std::memcpy(copy, path, length + 1);
}

bool IsPinned(const FileIdentity& file) {
    return std::find(pinnedFiles.begin(), pinnedFiles.end(), file) != pinnedFiles.end();
}

void Pin(const FileIdentity& file) {
    if (!IsPinned(file))
        pinnedFiles.push_back(file);
}

} // namespace

void MakeRoomForOpenFile() {
    openFiles.reserve(openFiles.size() + 1);
    pinnedFiles.reserve(pinnedFiles.size() + openFiles.size() + 1);
}

void RememberOpenFile(int descriptor, const char* path, const FileIdentity& file) {
    openFiles.push_back({descriptor, file});
    Copy(path, lastPath);
    lastFile = file;
}

void PinFile(const char* path) {
    struct stat status;
    if (stat(path, &status) == 0)
        Pin(FileIdentity(status));
    else
        PinPath(path);
}

void PinPath(const char* path) {
    Copy(path, pinnedPath);
}

void PinOpenFile(int descriptor) {
    for (const OpenFile& file : openFiles)
        if (file.descriptor == descriptor)
            Pin(file.identity);
}

void ForgetOpenFile(int descriptor) {
    std::erase_if(openFiles, [&](const OpenFile& file) { return file.descriptor == descriptor; });
}

bool IsHeldOpen(const char* path, const FileIdentity& file) {
    return std::any_of(openFiles.begin(), openFiles.end(),
                       [&](const OpenFile& open) { return open.identity == file; }) ||
           IsPinned(file) || std::strcmp(path, pinnedPath) == 0;
}

bool WasAnotherWhenOpened(const char* path, const FileIdentity& file) {
    return path[0] == '/' && lastFile && *lastFile != file && std::strcmp(path, lastPath) == 0;
}

} // namespace platform
