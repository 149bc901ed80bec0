// SPDX-License-Identifier: MIT
#include "platform/Tree.h"

#include "platform/EntryStatus_Windows.h"
#include "platform/LongName_Windows.h"

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
    const int error = StatusOf(file, status);
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
