// SPDX-License-Identifier: MIT
// Directory search, current directory and path splitting.
#pragma once

#include <cstddef>
#include <cstdint>

namespace platform {

// Capacity of every path buffer, in characters: 259 and the terminating zero.
inline constexpr std::size_t maxPath = 260;

// The separator written between a directory and a name.
extern const wchar_t pathSeparator;

struct FoundEntry {
    wchar_t name[maxPath];
    bool isDirectory;
    bool isSpecial; // a pipe or device, found because it was named exactly
};

// A search in progress. The entries are those of the moment it was started, "." and ".." first.
using SearchHandle = std::intptr_t;
inline constexpr SearchHandle noSearch = -1;

// Starts a search for a name or a pattern, whose last component may hold "*" and "?". Writes the first match.
// Returns noSearch, and leaves `entry` unspecified, when nothing matches. Throws std::bad_alloc.
SearchHandle SearchFirst(const wchar_t* pattern, FoundEntry& entry);

// Writes the next match; false when there is none. A search need not be closed: it holds no descriptor.
bool SearchNext(SearchHandle search, FoundEntry& entry);

void SearchClose(SearchHandle search);

// Writes the current directory's absolute path; false when it cannot be told or does not fit.
bool CurrentDirectory(wchar_t* buffer, std::size_t capacity);

// Makes `directory` current for a walk. Fails when it cannot be entered, and when this process is already
// walking it (a link that leads back up). Every success is paired with one LeaveDirectory.
bool EnterDirectory(const wchar_t* directory);

// Ends the innermost walk and returns to `previous`, the directory that was current before it. False when
// there is no way back to that same directory.
bool LeaveDirectory(const wchar_t* previous);

struct PathParts {
    wchar_t drive[maxPath];
    wchar_t directory[maxPath]; // with its trailing separator
    wchar_t base[maxPath];
    wchar_t extension[maxPath]; // with its leading dot
};

// Splits a path by this system's rules. When a part does not fit, all four are empty.
void SplitPath(const wchar_t* path, PathParts& parts);

} // namespace platform
