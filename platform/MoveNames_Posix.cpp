// SPDX-License-Identifier: MIT
#include "platform/MoveNames_Posix.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>

namespace platform {

namespace {

bool IsWithin(std::string_view path, std::string_view directory) {
    return path.starts_with(directory) && (path.size() == directory.size() || path[directory.size()] == '/');
}

bool IsSameDirectory(const char* a, const char* b) {
    struct stat statusA;
    struct stat statusB;
    return stat(a, &statusA) == 0 && stat(b, &statusB) == 0 && FileIdentity(statusA) == FileIdentity(statusB);
}

bool IsSameEntry(const char* from, const char* to) {
    const SplitNativePath splitFrom(from);
    const SplitNativePath splitTo(to);
    return std::strcmp(splitFrom.name, splitTo.name) == 0 &&
           IsSameDirectory(splitFrom.parent, splitTo.parent);
}

// What a file system that makes two files of two spellings says of both alike.
bool LooksAlike(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_mode == b.st_mode && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](unsigned char c) { return c < 0x80; });
}

// Which other letters a file system takes for the same is not known here.
bool MayBeOneName(std::string_view a, std::string_view b) {
    return !IsAscii(a) || !IsAscii(b) ||
           std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

bool AreBothListed(const char* directory, std::string_view a, std::string_view b) {
    DIR* const stream = opendir(directory);
    if (stream == nullptr)
        return false;
    bool listedA = false;
    bool listedB = false;
    while (const dirent* const entry = readdir(stream)) {
        listedA = listedA || a == entry->d_name;
        listedB = listedB || b == entry->d_name;
    }
    closedir(stream);
    return listedA && listedB;
}

// The whole path of an entry, which itself is not followed.
bool Resolve(const char* path, char (&resolved)[PATH_MAX]) {
    const SplitNativePath split(path);
    char parent[PATH_MAX];
    if (realpath(split.parent, parent) == nullptr)
        return false;
    const int length =
        std::snprintf(resolved, PATH_MAX, "%s/%s", std::strcmp(parent, "/") == 0 ? "" : parent, split.name);
    return length > 0 && length < PATH_MAX;
}

// Whether two paths, whose files exist, differ only in spellings of names that the file system
// holds once. A name that can be found, but is not listed, is another spelling of a listed one.
bool AreSpellingsOfOnePath(const char* from, const char* to) {
    char a[PATH_MAX];
    char b[PATH_MAX];
    if (!Resolve(from, a) || !Resolve(to, b))
        return false;
    for (char *nameA = a + 1, *nameB = b + 1;;) {
        const std::string_view componentA(nameA, std::strcspn(nameA, "/"));
        const std::string_view componentB(nameB, std::strcspn(nameB, "/"));
        char directory[PATH_MAX];
        directory[std::string_view(a, nameA).copy(directory, sizeof directory - 1)] = '\0';
        if (componentA != componentB &&
            (!MayBeOneName(componentA, componentB) || AreBothListed(directory, componentA, componentB)))
            return false;
        nameA += componentA.size();
        nameB += componentB.size();
        if (*nameA == '\0' || *nameB == '\0')
            return *nameA == *nameB;
        ++nameA;
        ++nameB;
    }
}

} // namespace

SplitNativePath::SplitNativePath(const char* path) {
    const char* const separator = std::strrchr(path, '/');
    name = separator == nullptr ? path : separator + 1;
    const std::string_view before = separator == nullptr ? std::string_view(".")
                                    : separator == path  ? std::string_view("/")
                                                         : std::string_view(path, separator);
    parent[before.copy(parent, sizeof parent - 1)] = '\0';
}

bool BelongsToSystem(std::string_view directory) {
    return IsWithin(directory, "/proc") || (IsWithin(directory, "/dev") && !IsWithin(directory, "/dev/shm"));
}

bool Exists(const char* path) {
    struct stat status;
    return lstat(path, &status) == 0;
}

bool IsLink(const char* path) {
    struct stat status;
    return lstat(path, &status) == 0 && S_ISLNK(status.st_mode);
}

bool Names(const char* path, const FileIdentity& file) {
    struct stat status;
    return lstat(path, &status) == 0 && FileIdentity(status) == file;
}

bool IsSameName(const char* from, const char* to) {
    struct stat statusFrom;
    struct stat statusTo;
    if (lstat(from, &statusFrom) != 0 || lstat(to, &statusTo) != 0)
        return false;
    if (FileIdentity(statusFrom) == FileIdentity(statusTo))
        return statusFrom.st_nlink == 1 || IsSameEntry(from, to);
    return LooksAlike(statusFrom, statusTo) && AreSpellingsOfOnePath(from, to);
}

} // namespace platform
