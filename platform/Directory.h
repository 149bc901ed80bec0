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
    wchar_t name[maxPath]; // as in the argument's last component, or as the directory has it
    bool isDirectory;      // also for a link to a directory
    bool isSpecial;        // a pipe or device, found because it was named exactly
};

// A search in progress. The entries are those of the moment it was started, "." and ".." first.
using SearchHandle = std::intptr_t;
inline constexpr SearchHandle noSearch = -1;

// Starts a search for a name or a pattern, whose last component may hold "*" and "?" (see Wildcard.h), and
// writes the first match. Returns noSearch, and leaves `entry` unspecified, when nothing matches. Throws
// std::bad_alloc.
//
// POSIX: what exists under exactly this name is found alone, also when the name holds wildcards; only "*.*"
// always means every name of the current directory, because walks rely on it. Separators at the end are
// dropped, and only directories are found then. Patterns pass over pipes, sockets and devices, and nothing finds
// a dangling link, a socket, "." or ".." by name, or an argument of maxPath characters.
SearchHandle SearchFirst(const wchar_t* pattern, FoundEntry& entry);

// Writes the next match; false when there is none. A search need not be closed; on POSIX systems it holds no
// descriptor, and once it has ended no memory.
bool SearchNext(SearchHandle search, FoundEntry& entry);

// Ends a search; one that has ended already may be closed too.
void SearchClose(SearchHandle search);

// Writes the current directory's absolute path; false when it cannot be told or does not fit.
bool CurrentDirectory(wchar_t* buffer, std::size_t capacity);

// Whether a path means the same whatever directory is current.
bool IsAbsolute(const wchar_t* path);

// Makes `directory` current for a walk. Fails when it cannot be entered, and when this process is already
// walking it (a link that leads back up, a path that was cut). Every success is paired with one LeaveDirectory.
// Throws std::bad_alloc.
bool EnterDirectory(const wchar_t* directory);

// Ends the innermost walk and returns to `previous`, the directory that was current before it. False when
// there is no way back to that same directory; what is current then is not known, so that nothing may be done
// by relative names until the enclosing walk has been left too. After the outermost walk there is none: some
// directory is current then that can be told, and other walks may begin there.
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
