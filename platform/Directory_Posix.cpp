// SPDX-License-Identifier: MIT
// The current directory, and the walks that change it. A walk remembers directories by device and inode: links
// cannot lead it in circles, and a path that has come to mean another directory does not bring it back to the
// wrong one.
#include "platform/Directory.h"

#include "platform/FileIdentity_Posix.h"
#include "platform/NativePath_Posix.h"
#include "platform/PathSplit.h"
#include "platform/Text.h"

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace platform {

namespace {

struct Walk {
    FileIdentity left;    // the directory that was current before
    FileIdentity entered; // the one that is walked
};

std::vector<Walk> walks; // the outermost first

// The directory that the outermost walk left: a way back that does not depend on its path.
int origin = -1;

bool IsWalked(const FileIdentity& directory) {
    return std::any_of(walks.begin(), walks.end(),
                       [&](const Walk& walk) { return walk.entered == directory; });
}

// Makes an open directory current, unless it is being walked already.
bool EnterOpen(int descriptor, const FileIdentity& left) {
    struct stat status;
    if (fstat(descriptor, &status) != 0 || IsWalked(FileIdentity(status)) || fchdir(descriptor) != 0)
        return false;
    walks.push_back({left, FileIdentity(status)});
    return true;
}

int OpenDirectory(const char* path) {
    return open(path, O_PATH | O_DIRECTORY | O_CLOEXEC);
}

bool Leads(const char* path, const FileIdentity& directory) {
    struct stat status;
    return stat(path, &status) == 0 && FileIdentity(status) == directory;
}

// Needs no descriptor, so that the way back is open when all descriptors are used up.
bool Return(const char* path, const FileIdentity& directory) {
    return Leads(path, directory) && chdir(path) == 0 && Leads(".", directory);
}

bool ReturnToOrigin() {
    return walks.empty() && origin != -1 && fchdir(origin) == 0;
}

void CloseOrigin() {
    if (origin != -1)
        close(origin);
    origin = -1;
}

// The directory that is current may be gone, and another walk could not begin there.
bool LoseOrigin() {
    [[maybe_unused]] const int result = chdir("/");
    return false;
}

} // namespace

bool CurrentDirectory(wchar_t* buffer, std::size_t capacity) {
    char path[PATH_MAX];
    const bool known = getcwd(path, sizeof path) != nullptr && path[0] == '/'; // else it cannot be reached
    return known && DecodeInto(path, buffer, capacity);
}

bool IsAbsolute(const wchar_t* path) {
    return path[0] == L'/';
}

bool EnterDirectory(const wchar_t* directory) {
    struct stat current;
    walks.reserve(walks.size() + 1);
    if (stat(".", &current) != 0)
        return false;
    if (walks.empty())
        origin = OpenDirectory(".");
    const int descriptor = OpenDirectory(NativePath(directory));
    const bool entered = descriptor != -1 && EnterOpen(descriptor, FileIdentity(current));
    if (descriptor != -1)
        close(descriptor);
    if (walks.empty())
        CloseOrigin();
    return entered;
}

bool LeaveDirectory(const wchar_t* previous) {
    if (walks.empty())
        return false;
    const FileIdentity goal = walks.back().left;
    walks.pop_back();
    const bool returned = Return(NativePath(previous), goal) || ReturnToOrigin() || Return("..", goal);
    if (!walks.empty())
        return returned;
    CloseOrigin();
    return returned || LoseOrigin();
}

void SplitPath(const wchar_t* path, PathParts& parts) {
    SplitPathByPosixRules(path, parts);
}

} // namespace platform
