// SPDX-License-Identifier: MIT
// Directory search. A pattern's directory is read whole before the first match is delivered: no descriptor
// stays open however deep a walk goes, and a file that the walk renames is not met a second time.
#include "platform/Directory.h"

#include "platform/NameSnapshot.h"
#include "platform/NativePath_Posix.h"
#include "platform/ReadAhead.h"
#include "platform/Text.h"
#include "platform/Wildcard.h"

#include <dirent.h>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace platform {

namespace {

// What the directory tells of an entry. A link, or any entry where the file system does not tell, has to be
// looked at.
enum EntryKind : std::uint8_t { regularFile, directory, unknown };

struct Search {
    std::string directory; // of the entries, with its separator; empty for the current one
    NameSnapshot names;
    bool directoriesOnly = false; // the pattern ended in a separator
};

// The searches that have not ended. A walk leaves its searches open, so they belong to no caller.
std::map<SearchHandle, Search> searches;
SearchHandle lastHandle = noSearch;

struct CloseDirectory {
    void operator()(DIR* stream) const { closedir(stream); }
};
using DirectoryStream = std::unique_ptr<DIR, CloseDirectory>;

bool IsSpecial(mode_t mode) {
    return !S_ISDIR(mode) && !S_ISREG(mode);
}

// False for pipes, sockets and devices, which patterns pass over.
bool KindOf(unsigned char type, std::uint8_t& kind) {
    switch (type) {
    case DT_REG:
        kind = regularFile;
        return true;
    case DT_DIR:
        kind = directory;
        return true;
    case DT_LNK:
    case DT_UNKNOWN:
        kind = unknown;
        return true;
    default:
        return false;
    }
}

void ReadNames(DIR* stream, const WildcardPattern& pattern, NameSnapshot& names) {
    while (const dirent* const found = readdir(stream)) {
        wchar_t name[maxPath];
        std::uint8_t kind;
        if (KindOf(found->d_type, kind) && DecodeInto(found->d_name, name, maxPath) && pattern.Matches(name))
            names.Add(found->d_name, kind);
    }
    names.Sort();
}

// Writes where an entry is; false where no path can name it.
bool PathOf(const Search& search, std::string_view name, char (&path)[PATH_MAX]) {
    if (search.directory.size() + name.size() >= sizeof path)
        return false;
    search.directory.copy(path, sizeof path);
    path[search.directory.size() + name.copy(path + search.directory.size(), name.size())] = '\0';
    return true;
}

// Looks at what a name leads to; false where it leads nowhere or to something special.
bool LookAt(const Search& search, std::string_view name, bool& isDirectory) {
    char path[PATH_MAX];
    struct stat status;
    if (!PathOf(search, name, path) || stat(path, &status) != 0 || IsSpecial(status.st_mode))
        return false;
    isDirectory = S_ISDIR(status.st_mode);
    return true;
}

// Announces the files that come next, where that pays.
void AnnounceNext(Search& search) {
    std::string_view name;
    std::uint8_t kind;
    char path[PATH_MAX];
    while (search.names.LookedAt() < filesAhead && readPace.TakeFile() && search.names.LookAhead(name, kind))
        if (kind == regularFile && PathOf(search, name, path))
            Announce(path);
}

bool Deliver(Search& search, FoundEntry& entry) {
    std::string_view name;
    std::uint8_t kind;
    while (search.names.Take(name, kind)) {
        entry.isDirectory = kind == directory;
        entry.isSpecial = false;
        if (kind == unknown && !LookAt(search, name, entry.isDirectory))
            continue;
        if (search.directoriesOnly && !entry.isDirectory)
            continue;
        DecodeInto(name, entry.name, maxPath); // fits, or it would not have been kept
        return true;
    }
    return false;
}

// Finds what exists under exactly this path, where only a directory exists with a separator at the end.
bool LookUp(const wchar_t* path, std::wstring_view name, FoundEntry& entry) {
    struct stat status;
    if (stat(NativePath(path), &status) != 0 || S_ISSOCK(status.st_mode))
        return false;
    entry.name[name.copy(entry.name, maxPath - 1)] = L'\0';
    entry.isDirectory = S_ISDIR(status.st_mode);
    entry.isSpecial = IsSpecial(status.st_mode);
    return true;
}

// The directory that the entries of a pattern are in, with the matching names read.
Search ReadDirectory(std::wstring_view directory, std::wstring_view pattern) {
    Search search;
    search.directory = EncodeName(directory);
    const DirectoryStream stream(opendir(directory.empty() ? "." : search.directory.c_str()));
    if (stream)
        ReadNames(stream.get(), WildcardPattern(pattern), search.names);
    return search;
}

SearchHandle Keep(Search&& search) {
    searches.emplace(lastHandle + 1, std::move(search));
    return ++lastHandle;
}

std::wstring_view WithoutTrailingSeparators(std::wstring_view argument) {
    return argument.substr(0, argument.find_last_not_of(L'/') + 1);
}

} // namespace

const wchar_t pathSeparator = L'/';

SearchHandle SearchFirst(const wchar_t* pattern, FoundEntry& entry) {
    const std::wstring_view whole(pattern);
    const std::wstring_view path = WithoutTrailingSeparators(whole);
    const std::size_t nameStart = path.rfind(L'/') + 1;
    const std::wstring_view name = path.substr(nameStart);
    if (whole.size() >= maxPath || name.empty() || name == L"." || name == L"..")
        return noSearch;
    if (whole != L"*.*" && LookUp(pattern, name, entry))
        return ++lastHandle; // a search that has ended
    if (!HoldsWildcard(name))
        return noSearch;
    Search search = ReadDirectory(path.substr(0, nameStart), name);
    search.directoriesOnly = path.size() != whole.size();
    return Deliver(search, entry) ? Keep(std::move(search)) : noSearch;
}

bool SearchNext(SearchHandle search, FoundEntry& entry) {
    const auto found = searches.find(search);
    if (found == searches.end())
        return false;
    AnnounceNext(found->second);
    if (Deliver(found->second, entry))
        return true;
    searches.erase(found);
    return false;
}

void SearchClose(SearchHandle search) {
    searches.erase(search);
}

} // namespace platform
