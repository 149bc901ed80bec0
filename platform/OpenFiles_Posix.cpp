// SPDX-License-Identifier: MIT
#include "platform/OpenFiles_Posix.h"

#include "platform/FileIdentity_Posix.h"

#include <algorithm>
#include <cerrno>
#include <vector>

namespace platform {

namespace {

std::vector<int> openDescriptors;
std::vector<FileIdentity> pinnedFiles;
bool anyFileMayBePinned = false;

bool Names(int descriptor, const FileIdentity& file) {
    struct stat status;
    return fstat(descriptor, &status) == 0 && FileIdentity(status) == file;
}

} // namespace

void MakeRoomForOpenFile() {
    openDescriptors.reserve(openDescriptors.size() + 1);
    pinnedFiles.reserve(pinnedFiles.size() + 1);
}

void RememberOpenFile(int descriptor) {
    openDescriptors.push_back(descriptor);
}

void PinFile(const char* path) {
    struct stat status;
    if (stat(path, &status) != 0)
        anyFileMayBePinned = anyFileMayBePinned || errno != ENOENT;
    else if (!IsHeldOpen(status))
        pinnedFiles.emplace_back(status);
}

void PinOpenFile(int descriptor) {
    struct stat status;
    if (fstat(descriptor, &status) != 0)
        anyFileMayBePinned = true;
    else
        pinnedFiles.emplace_back(status);
}

void ForgetOpenFile(int descriptor) {
    std::erase(openDescriptors, descriptor);
}

bool IsHeldOpen(const struct stat& status) {
    const FileIdentity file(status);
    return anyFileMayBePinned ||
           std::any_of(openDescriptors.begin(), openDescriptors.end(),
                       [&](int descriptor) { return Names(descriptor, file); }) ||
           std::find(pinnedFiles.begin(), pinnedFiles.end(), file) != pinnedFiles.end();
}

} // namespace platform
