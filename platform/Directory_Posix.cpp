// SPDX-License-Identifier: MIT
// Directory search over snapshots.
#include "platform/Directory.h"

#include "platform/NativePath_Posix.h"
#include "platform/PathSplit.h"
#include "platform/Snapshot_Posix.h"
#include "platform/Text.h"
#include "platform/Wildcard.h"

#include <cwchar>
#include <dirent.h>
#include <list>
#include <string>
#include <sys/stat.h>

namespace platform {

const wchar_t pathSeparator = L'/';

namespace {

struct Search {
    Snapshot snapshot;
    std::string directory; // with its separator; empty for the current one
    bool directoriesOnly;  // the pattern ended in a separator
    std::list<Search>::iterator self;
};

// Searches that are never closed stay here, with nothing but the entries they have not handed out.
std::list<Search> searches;

enum class FileKind { None, Regular, Directory, Pipe, Socket, Device };

// What a name leads to, through links. None when it leads nowhere.
FileKind KindOf(const char* path) {
    struct stat status;
    if (stat(path, &status) != 0)
        return FileKind::None;
    switch (status.st_mode & S_IFMT) {
    case S_IFREG:
        return FileKind::Regular;
    case S_IFDIR:
        return FileKind::Directory;
    case S_IFIFO:
        return FileKind::Pipe;
    case S_IFSOCK:
        return FileKind::Socket;
    default:
        return FileKind::Device;
    }
}

FileKind KindOf(const Search& search, const Snapshot::Entry& entry) {
    switch (entry.type) {
    case DT_REG:
        return FileKind::Regular;
    case DT_DIR:
        return FileKind::Directory;
    case DT_LNK:
    case DT_UNKNOWN:
        return KindOf((search.directory + entry.name).c_str());
    default:
        return FileKind::Device;
    }
}

// The target of a search: a directory part, which is taken as it is, and a name or pattern in it.
struct Target {
    std::wstring_view directory;
    std::wstring_view name;
    bool hadTrailingSeparator;
};

Target SplitTarget(std::wstring_view text) {
    const std::size_t end = text.find_last_not_of(pathSeparator) + 1;
    const bool hadTrailingSeparator = end < text.size();
    text = text.substr(0, end);
    const std::size_t directoryLength = text.rfind(pathSeparator) + 1;
    return {text.substr(0, directoryLength), text.substr(directoryLength), hadTrailingSeparator};
}

bool StoreName(FoundEntry& found, std::string_view name, FileKind kind) {
    found.isDirectory = kind == FileKind::Directory;
    found.isSpecial = kind == FileKind::Pipe || kind == FileKind::Device;
    return DecodeInto(name, found.name, maxPath);
}

SearchHandle Keep(Search&& search) {
    searches.push_front(std::move(search));
    searches.front().self = searches.begin();
    return reinterpret_cast<SearchHandle>(&searches.front());
}

Search NothingMore() {
    return {Snapshot("", [](std::string_view) { return false; }), {}, false, {}};
}

// A name that exists exactly as it is written, also one that holds "*" or "?".
SearchHandle SearchExactName(const Target& target, FileKind kind, FoundEntry& found) {
    const bool isDirectory = kind == FileKind::Directory;
    if (kind == FileKind::None || kind == FileKind::Socket || (target.hadTrailingSeparator && !isDirectory))
        return noSearch;
    return StoreName(found, EncodeName(target.name), kind) ? Keep(NothingMore()) : noSearch;
}

SearchHandle SearchPattern(const Target& target, FoundEntry& found) {
    const Wildcard wildcard(target.name);
    const auto accepts = [&wildcard](std::string_view name) {
        return wildcard.MatchesEverything() || wildcard.Matches(DecodeName(name));
    };
    std::string directory = EncodeName(target.directory);
    Snapshot snapshot(directory.empty() ? "." : directory.c_str(), accepts);
    const SearchHandle search =
        Keep({std::move(snapshot), std::move(directory), target.hadTrailingSeparator, {}});
    if (SearchNext(search, found))
        return search;
    SearchClose(search);
    return noSearch;
}

bool NamesSomething(const char* path) {
    struct stat status;
    return lstat(path, &status) == 0;
}

} // namespace

SearchHandle SearchFirst(const wchar_t* pattern, FoundEntry& found) {
    if (std::wcslen(pattern) >= maxPath)
        return noSearch;
    const Target target = SplitTarget(pattern);
    if (target.name.empty())
        return noSearch;
    const std::string path = EncodeName(target.directory) + EncodeName(target.name);
    if (NamesSomething(path.c_str()))
        return SearchExactName(target, KindOf(path.c_str()), found);
    return HasWildcard(target.name) ? SearchPattern(target, found) : noSearch;
}

// Sockets, pipes and devices that nobody named are passed over, and links that lead nowhere.
bool SearchNext(SearchHandle handle, FoundEntry& found) {
    Search& search = *reinterpret_cast<Search*>(handle);
    Snapshot::Entry entry;
    while (search.snapshot.TakeNext(entry)) {
        const FileKind kind = KindOf(search, entry);
        const bool wanted =
            kind == FileKind::Directory || (kind == FileKind::Regular && !search.directoriesOnly);
        if (wanted && StoreName(found, entry.name, kind))
            return true;
    }
    return false;
}

void SearchClose(SearchHandle handle) {
    searches.erase(reinterpret_cast<Search*>(handle)->self);
}

void SplitPath(const wchar_t* path, PathParts& parts) {
    SplitPathByPosixRules(path, parts);
}

} // namespace platform
