// SPDX-License-Identifier: MIT
#include "app/TargetEnumeration.h"

#include "app/ProcessFile.h"
#include "platform/Directory.h"
#include "platform/File.h"
#include "support/StringHelper.h"

#include <cwchar>
#include <new>
#include <utility>

namespace {

using platform::FoundEntry;
using platform::maxPath;
using platform::PathParts;
using platform::pathSeparator;
using platform::SearchHandle;

// A directory too large for the memory at hand is passed over like one that cannot be read.
SearchHandle Search(const wchar_t* pattern, FoundEntry& entry) {
    try {
        return platform::SearchFirst(pattern, entry);
    } catch (const std::bad_alloc&) {
        return platform::noSearch;
    }
}

// The same for one that there is not even memory to remember.
bool Enter(const wchar_t* directory) {
    try {
        return platform::EnterDirectory(directory);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

bool IsSelfOrParent(const wchar_t* name) {
    return std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0;
}

// Pipes and devices are read only where the user named them, as in /dev/stdin.
void ProcessFoundFile(RunContext& context, const wchar_t* path, const FoundEntry& entry) {
    platform::AllowSpecialFiles(entry.isSpecial);
    ProcessFile(context, path);
}

bool ProcessFoundDirectory(RunContext& context, const wchar_t* path, const FoundEntry& entry) {
    return IsSelfOrParent(entry.name) || ProcessDirectory(context, path);
}

// Splits an argument that was found. "dir/" was found as "dir", and is split as that. Where an argument is found that
// no path buffer holds, the system splits it as it is.
void SplitWithoutTrailingSeparators(const wchar_t* argument, PathParts& parts) {
    wchar_t target[maxPath];
    if (std::wcslen(argument) >= maxPath) {
        platform::SplitPath(argument, parts);
        return;
    }
    FormatToBuffer(target, maxPath, L"%s", argument);
    std::size_t length = std::wcslen(target);
    while (length > 1 && target[length - 1] == pathSeparator)
        target[--length] = L'\0';
    platform::SplitPath(target, parts);
}

// The drive and directory of the names found for an argument. An argument without a directory part is
// completed with the current directory. Deliberately, one with a directory part stays relative, although the
// paths composed from it lead nowhere once a walk has made another directory current: this is how recorded
// reports show them. False when the current directory is not known.
bool LocateTarget(const wchar_t* argument, PathParts& parts) {
    SplitWithoutTrailingSeparators(argument, parts);
    if (parts.directory[0] != L'\0')
        return true;
    wchar_t current[maxPath];
    if (!platform::CurrentDirectory(current, maxPath))
        return false;
    FormatToBuffer(parts.directory, maxPath, L"%s%c", current, pathSeparator);
    return true;
}

// Whether what an argument names can be found, and is what the user meant.
bool MayBeProcessed(const RunContext& context, const wchar_t* argument) {
    return context.inStartDirectory || platform::IsAbsolute(argument);
}

// A file that is renamed goes into the start directory.
void ProcessNamedFile(RunContext& context, const wchar_t* path, const FoundEntry& entry) {
    const bool rename = std::exchange(context.rename, context.rename && context.inStartDirectory);
    ProcessFoundFile(context, path, entry);
    context.rename = rename;
}

// Processes the entry that a search stands at, and every following one.
void ProcessMatches(RunContext& context, const wchar_t* argument, SearchHandle search, FoundEntry& entry) {
    PathParts parts;
    if (!LocateTarget(argument, parts))
        return;
    do {
        wchar_t path[maxPath];
        FormatToBuffer(path, maxPath, L"%s%s%s", parts.drive, parts.directory, entry.name);
        if (!entry.isDirectory)
            ProcessNamedFile(context, path, entry);
        else if (!ProcessFoundDirectory(context, path, entry)) // one level deep without -subdirs, too
            context.inStartDirectory = false;
    } while (MayBeProcessed(context, argument) && platform::SearchNext(search, entry));
}

// Processes the files of the current directory, which was reached as `directory`. Stops where
// the way back out of a sub-directory is lost. The search stays open on purpose.
void WalkCurrentDirectory(RunContext& context, const wchar_t* directory) {
    FoundEntry entry;
    const SearchHandle search = Search(L"*.*", entry);
    if (search == platform::noSearch)
        return;
    do {
        wchar_t path[maxPath];
        FormatToBuffer(path, maxPath, L"%s%c%s", directory, pathSeparator, entry.name);
        if (!entry.isDirectory)
            ProcessFoundFile(context, path, entry);
        else if (context.recurse && !ProcessFoundDirectory(context, path, entry))
            return;
    } while (platform::SearchNext(search, entry));
}

} // namespace

void ProcessTarget(RunContext& context, const wchar_t* argument) {
    if (!MayBeProcessed(context, argument))
        return;
    FoundEntry entry;
    const SearchHandle search = Search(argument, entry);
    if (search == platform::noSearch)
        return;
    ProcessMatches(context, argument, search, entry);
    platform::SearchClose(search);
}

bool ProcessDirectory(RunContext& context, const wchar_t* directory) {
    wchar_t previous[maxPath];
    if (!platform::CurrentDirectory(previous, maxPath) || !Enter(directory))
        return true;
    WalkCurrentDirectory(context, directory);
    return platform::LeaveDirectory(previous);
}
