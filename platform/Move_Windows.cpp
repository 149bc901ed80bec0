// SPDX-License-Identifier: MIT
// The system's move never replaces a file unless it is told to, takes a file that already bears the name for
// moved, copies to another volume, and like its delete refuses a file that is still open. It would move links and
// directories, too.
#include "platform/File.h"

#include <windows.h>

namespace platform {

namespace {

enum class EntryKind { none, regularFile, link, other };

// Files that a cloud or deduplication stores elsewhere are files; only what stands for another name is a link.
bool IsLink(const WIN32_FIND_DATAW& entry) {
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           IsReparseTagNameSurrogate(entry.dwReserved0);
}

EntryKind KindOf(const wchar_t* path) {
    WIN32_FIND_DATAW entry;
    const HANDLE search = FindFirstFileW(path, &entry);
    if (search == INVALID_HANDLE_VALUE)
        return EntryKind::none;
    FindClose(search);
    if (IsLink(entry))
        return EntryKind::link;
    return (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0 ? EntryKind::regularFile
                                                                    : EntryKind::other;
}

// An open handle that lets nobody rename or remove a file or directory. Two runs with different
// digests that take each of two equal files for superfluous hold both, and remove none.
class Hold {
  public:
    explicit Hold(const wchar_t* name)
        : handle_(CreateFileW(name, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                              FILE_FLAG_BACKUP_SEMANTICS, nullptr)),
          refused_(handle_ == INVALID_HANDLE_VALUE && GetLastError() == ERROR_SHARING_VIOLATION) {}
    ~Hold() {
        if (handle_ != INVALID_HANDLE_VALUE)
            CloseHandle(handle_);
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

    // False: somebody may be removing it.
    explicit operator bool() const { return !refused_; }

  private:
    HANDLE handle_;
    bool refused_;
};

} // namespace

MoveResult MoveWithoutReplacing(const wchar_t* from, const wchar_t* to) {
    if (KindOf(from) != EntryKind::regularFile)
        return MoveResult::stays;
    if (MoveFileExW(from, to, MOVEFILE_COPY_ALLOWED) != 0)
        return MoveResult::moved;
    const EntryKind kind = KindOf(to);
    if (kind == EntryKind::none)
        return MoveResult::failed;
    return kind == EntryKind::link ? MoveResult::nameBlocked : MoveResult::nameTaken;
}

bool RemoveInFavourOf(const wchar_t* path, const wchar_t* other) {
    const Hold hold(other);
    return hold && MoveWithoutReplacing(path, other) == MoveResult::nameTaken && DeleteFileW(path) != 0;
}

bool RemoveFile(const wchar_t* path) {
    return KindOf(path) == EntryKind::regularFile && DeleteFileW(path) != 0;
}

} // namespace platform
