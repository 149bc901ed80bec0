// SPDX-License-Identifier: MIT
// The current directory, and the way in and out of the directories of a walk. Only the outermost walk keeps a
// descriptor, so that the depth of a tree is not bounded by the number of descriptors.
#include "platform/Directory.h"

#include "platform/FileIdentity_Posix.h"
#include "platform/NativePath_Posix.h"
#include "platform/Text.h"

#include <algorithm>
#include <climits>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace platform {

namespace {

constexpr int noDescriptor = -1;

struct Walk {
    FileIdentity left;    // the directory that was current before
    FileIdentity entered; // the directory being walked
};

std::vector<Walk> walks;
int startDirectory = noDescriptor; // of the outermost walk: a way back that needs no path

int OpenDirectory(const char* path) {
    return open(path, O_PATH | O_DIRECTORY | O_CLOEXEC);
}

bool IsBeingWalked(const FileIdentity& directory) {
    return std::any_of(walks.begin(), walks.end(),
                       [&](const Walk& walk) { return walk.entered == directory; });
}

// Enters the directory that `target` and `from`, where it is now, stand for.
bool Enter(int from, int target) {
    struct stat fromStatus;
    struct stat targetStatus;
    if (fstat(from, &fromStatus) != 0 || fstat(target, &targetStatus) != 0)
        return false;
    const Walk walk{FileIdentity(fromStatus), FileIdentity(targetStatus)};
    if (IsBeingWalked(walk.entered) || fchdir(target) != 0)
        return false;
    walks.push_back(walk);
    return true;
}

void CloseIfOpen(int descriptor) {
    if (descriptor != noDescriptor)
        close(descriptor);
}

bool IsCurrent(const FileIdentity& directory) {
    struct stat status;
    return stat(".", &status) == 0 && FileIdentity(status) == directory;
}

} // namespace

bool CurrentDirectory(wchar_t* buffer, std::size_t capacity) {
    char path[PATH_MAX];
    // A directory outside the process's root has a path that does not begin at the root.
    return getcwd(path, sizeof path) != nullptr && path[0] == '/' && DecodeInto(path, buffer, capacity);
}

bool EnterDirectory(const wchar_t* directory) {
    walks.reserve(walks.size() + 1);
    const int from = OpenDirectory(".");
    const int target = OpenDirectory(NativePath(directory));
    const bool entered = from != noDescriptor && target != noDescriptor && Enter(from, target);
    CloseIfOpen(target);
    if (entered && walks.size() == 1)
        startDirectory = from;
    else
        CloseIfOpen(from);
    return entered;
}

bool LeaveDirectory(const wchar_t* previous) {
    const FileIdentity left = walks.back().left;
    walks.pop_back();
    bool returned = chdir(NativePath(previous)) == 0 && IsCurrent(left);
    if (walks.empty()) {
        returned = returned || fchdir(startDirectory) == 0;
        close(startDirectory);
        startDirectory = noDescriptor;
    }
    return returned;
}

} // namespace platform
