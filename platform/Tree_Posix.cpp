// SPDX-License-Identifier: MIT
#include "platform/Tree.h"

#include "platform/EntryStatus_Posix.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>

namespace platform {

namespace {

struct CloseDirectory {
    void operator()(DIR* directory) const { closedir(directory); }
};

// File systems that do not keep the kind in the directory are asked for each entry. What vanished
// meanwhile is taken for a file, whose opening then says so.
EntryKind KindOf(const dirent& entry, int directory) {
    if (entry.d_type != DT_UNKNOWN)
        return KindOfMode(static_cast<mode_t>(DTTOIF(entry.d_type)));
    struct stat status;
    if (fstatat(directory, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return EntryKind::regular;
    return KindOfMode(status.st_mode);
}

bool IsDots(const char* name) {
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

} // namespace

int LookAt(const std::string& name, bool follow, EntryStatus& status) {
    struct stat found;
    if (fstatat(AT_FDCWD, name.c_str(), &found, follow ? 0 : AT_SYMLINK_NOFOLLOW) != 0)
        return errno;
    status = StatusOf(found);
    return 0;
}

std::size_t LengthOfDirectory(std::string_view name) {
    return name.rfind('/') + 1; // npos + 1 is 0
}

int ListDirectory(const std::string& name, const std::function<void(std::string_view, EntryKind)>& found) {
    const std::unique_ptr<DIR, CloseDirectory> directory(opendir(name.c_str()));
    if (!directory)
        return errno;
    for (;;) {
        errno = 0;
        const dirent* const entry = readdir(directory.get());
        if (entry == nullptr)
            return errno;
        if (!IsDots(entry->d_name))
            found(entry->d_name, KindOf(*entry, dirfd(directory.get())));
    }
}

} // namespace platform
