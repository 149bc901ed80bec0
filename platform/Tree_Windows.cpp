// SPDX-License-Identifier: MIT
#include "platform/Tree.h"

#include "platform/LongName_Windows.h"

#include <cerrno>
#include <cwchar>
#include <memory>
#include <windows.h>

namespace platform {

namespace {

struct CloseSearch {
    void operator()(HANDLE search) const {
        if (search != INVALID_HANDLE_VALUE)
            FindClose(search);
    }
};

// The numbers that the runtime's own functions give for these errors.
int ErrnoOf(DWORD error) {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_INVALID_DRIVE:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_PATHNAME:
        return ENOENT;
    case ERROR_DIRECTORY:
        return ENOTDIR;
    case ERROR_NOT_ENOUGH_MEMORY:
        return ENOMEM;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return EACCES;
    default:
        return EIO;
    }
}

EntryKind KindOf(DWORD attributes, DWORD reparseTag) {
    const bool reparse = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (reparse && (reparseTag == IO_REPARSE_TAG_SYMLINK || reparseTag == IO_REPARSE_TAG_MOUNT_POINT))
        return EntryKind::link;
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? EntryKind::directory : EntryKind::regular;
}

std::uint64_t Join(DWORD high, DWORD low) {
    return std::uint64_t{high} << 32 | low;
}

DWORD ReparseTag(HANDLE file) {
    FILE_ATTRIBUTE_TAG_INFO info;
    return GetFileInformationByHandleEx(file, FileAttributeTagInfo, &info, sizeof info) != 0 ? info.ReparseTag
                                                                                             : 0;
}

int LookAt(HANDLE file, EntryStatus& status) {
    BY_HANDLE_FILE_INFORMATION info;
    if (GetFileType(file) != FILE_TYPE_DISK) {
        status = {};
        return 0;
    }
    if (GetFileInformationByHandle(file, &info) == 0)
        return ErrnoOf(GetLastError());
    status.kind = KindOf(info.dwFileAttributes, ReparseTag(file));
    status.size = status.kind == EntryKind::regular ? Join(info.nFileSizeHigh, info.nFileSizeLow) : 0;
    status.identity = {info.dwVolumeSerialNumber, Join(info.nFileIndexHigh, info.nFileIndexLow)};
    return 0;
}

bool IsDots(const wchar_t* name) {
    return std::wcscmp(name, L".") == 0 || std::wcscmp(name, L"..") == 0;
}

} // namespace

int LookAt(const std::string& name, bool follow, EntryStatus& status) {
    const DWORD flags = FILE_FLAG_BACKUP_SEMANTICS | (follow ? 0 : FILE_FLAG_OPEN_REPARSE_POINT);
    const HANDLE file = CreateFileW(LongName(name).c_str(), FILE_READ_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, flags, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return ErrnoOf(GetLastError());
    const int error = LookAt(file, status);
    CloseHandle(file);
    return error;
}

std::size_t LengthOfDirectory(std::string_view name) {
    return name.find_last_of("/\\:") + 1; // npos + 1 is 0
}

int ListDirectory(const std::string& name, const std::function<void(std::string_view, EntryKind)>& found) {
    WIN32_FIND_DATAW entry;
    const std::unique_ptr<void, CloseSearch> search(FindFirstFileW(LongName(name + "\\*").c_str(), &entry));
    if (search.get() == INVALID_HANDLE_VALUE)
        return ErrnoOf(GetLastError());
    do {
        if (!IsDots(entry.cFileName))
            found(Utf8Of(entry.cFileName), KindOf(entry.dwFileAttributes, entry.dwReserved0));
    } while (FindNextFileW(search.get(), &entry) != 0);
    const DWORD error = GetLastError();
    return error == ERROR_NO_MORE_FILES ? 0 : ErrnoOf(error);
}

} // namespace platform
