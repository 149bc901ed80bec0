// SPDX-License-Identifier: MIT
// The runtime's own directory services: what they find, and in which order, is what users of this system know.
#include "platform/Directory.h"

#include <algorithm>
#include <cwchar>
#include <direct.h>
#include <io.h>
#include <iterator>

namespace platform {

namespace {

void Store(const _wfinddata_t& found, FoundEntry& entry) {
    static_assert(sizeof(_wfinddata_t::name) <= sizeof(FoundEntry::name));
    std::copy(std::begin(found.name), std::end(found.name), entry.name);
    entry.isDirectory = (found.attrib & _A_SUBDIR) != 0;
    entry.isSpecial = false;
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

bool EnterDirectory(const wchar_t* directory) {
    return _wchdir(directory) == 0;
}

bool LeaveDirectory(const wchar_t* previous) {
    return _wchdir(previous) == 0;
}

// The runtime empties all four parts when one does not fit.
void SplitPath(const wchar_t* path, PathParts& parts) {
    _wsplitpath_s(path, parts.drive, maxPath, parts.directory, maxPath, parts.base, maxPath, parts.extension,
                  maxPath);
}

} // namespace platform
