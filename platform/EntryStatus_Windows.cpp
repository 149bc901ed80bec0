// SPDX-License-Identifier: MIT
#include "platform/EntryStatus_Windows.h"

#include <cerrno>
#include <cstdint>
#include <limits>

namespace platform {

namespace {

std::uint64_t Join(DWORD high, DWORD low) {
    return std::uint64_t{high} << 32 | low;
}

DWORD ReparseTag(HANDLE file) {
    FILE_ATTRIBUTE_TAG_INFO info;
    return GetFileInformationByHandleEx(file, FileAttributeTagInfo, &info, sizeof info) != 0 ? info.ReparseTag
                                                                                             : 0;
}

// The system counts in units of 100 ns since 1601.
std::int64_t Nanoseconds(const FILETIME& time) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    constexpr std::uint64_t start = 116'444'736'000'000'000; // 1970
    constexpr std::uint64_t range = static_cast<std::uint64_t>(most) / 100;
    const std::uint64_t units = Join(time.dwHighDateTime, time.dwLowDateTime);
    if (units < start - range || units > start + range)
        return most;
    return (static_cast<std::int64_t>(units) - static_cast<std::int64_t>(start)) * 100;
}

} // namespace

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

int StatusOf(HANDLE file, EntryStatus& status) {
    BY_HANDLE_FILE_INFORMATION info;
    status = {};
    if (GetFileType(file) != FILE_TYPE_DISK)
        return 0;
    if (GetFileInformationByHandle(file, &info) == 0)
        return ErrnoOf(GetLastError());
    status.kind = KindOf(info.dwFileAttributes, ReparseTag(file));
    status.size = status.kind == EntryKind::regular ? Join(info.nFileSizeHigh, info.nFileSizeLow) : 0;
    status.identity = {info.dwVolumeSerialNumber, Join(info.nFileIndexHigh, info.nFileIndexLow)};
    status.modified = Nanoseconds(info.ftLastWriteTime);
    return 0;
}

} // namespace platform
