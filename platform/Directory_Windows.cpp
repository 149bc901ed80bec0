// SPDX-License-Identifier: MIT
// The runtime's own directory services: what they find, and in which order, is what users of this system know.
// A walk remembers directories by volume and file index: a path that was cut, and then names the directory that
// it is in, ends there, and so do links that lead back up.
#include "platform/Directory.h"

#include <algorithm>
#include <cstdint>
#include <cwchar>
#include <direct.h>
#include <io.h>
#include <iterator>
#include <vector>
#include <windows.h>

namespace platform {

namespace {

void Store(const _wfinddata_t& found, FoundEntry& entry) {
    static_assert(sizeof(_wfinddata_t::name) <= sizeof(FoundEntry::name));
    std::copy(std::begin(found.name), std::end(found.name), entry.name);
    entry.isDirectory = (found.attrib & _A_SUBDIR) != 0;
    entry.isSpecial = false;
}

// What makes two paths the same directory. All zero where the file system does not tell.
struct DirectoryIdentity {
    DWORD volume = 0;
    std::uint64_t index = 0;

    bool operator==(const DirectoryIdentity&) const = default;
};

DirectoryIdentity IdentityOf(const wchar_t* directory) {
    constexpr DWORD sharing = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE handle =
        CreateFileW(directory, 0, sharing, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return {};
    BY_HANDLE_FILE_INFORMATION found;
    const bool known = GetFileInformationByHandle(handle, &found) != 0;
    CloseHandle(handle);
    if (!known)
        return {};
    return {found.dwVolumeSerialNumber, std::uint64_t{found.nFileIndexHigh} << 32 | found.nFileIndexLow};
}

std::vector<DirectoryIdentity> walks; // the directories that are walked, the outermost first

bool IsWalked(const DirectoryIdentity& directory) {
    return directory.index != 0 && std::find(walks.begin(), walks.end(), directory) != walks.end();
}

bool IsSeparator(wchar_t character) {
    return character == L'\\' || character == L'/';
}

} // namespace

const wchar_t pathSeparator = L'\\';

SearchHandle SearchFirst(const wchar_t* pattern, FoundEntry& entry) {
    _wfinddata_t found;
    const SearchHandle search = _wfindfirst(pattern, &found);
    if (search != noSearch)
        Store(found, entry);
    return search;
}

bool SearchNext(SearchHandle search, FoundEntry& entry) {
    _wfinddata_t found;
    if (_wfindnext(search, &found) != 0)
        return false;
    Store(found, entry);
    return true;
}

void SearchClose(SearchHandle search) {
    _findclose(search);
}

bool CurrentDirectory(wchar_t* buffer, std::size_t capacity) {
    return _wgetcwd(buffer, static_cast<int>(capacity)) != nullptr;
}

// With a drive and its root, or a server.
bool IsAbsolute(const wchar_t* path) {
    const bool hasDrive = path[0] != L'\0' && path[1] == L':';
    return hasDrive ? IsSeparator(path[2]) : IsSeparator(path[0]) && IsSeparator(path[1]);
}

bool EnterDirectory(const wchar_t* directory) {
    walks.reserve(walks.size() + 1);
    const DirectoryIdentity identity = IdentityOf(directory);
    if (IsWalked(identity) || _wchdir(directory) != 0)
        return false;
    walks.push_back(identity);
    return true;
}

bool LeaveDirectory(const wchar_t* previous) {
    if (walks.empty())
        return false;
    walks.pop_back();
    return _wchdir(previous) == 0;
}

// The runtime empties all four parts when one does not fit.
void SplitPath(const wchar_t* path, PathParts& parts) {
    _wsplitpath_s(path, parts.drive, maxPath, parts.directory, maxPath, parts.base, maxPath, parts.extension,
                  maxPath);
}

} // namespace platform
