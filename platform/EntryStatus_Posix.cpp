// SPDX-License-Identifier: MIT
#include "platform/EntryStatus_Posix.h"

#include <limits>

namespace platform {

namespace {

std::int64_t Nanoseconds(const struct timespec& time) {
    constexpr std::int64_t second = 1'000'000'000;
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const std::int64_t seconds = time.tv_sec;
    if (seconds >= most / second || seconds <= -(most / second))
        return most;
    return seconds * second + time.tv_nsec;
}

} // namespace

EntryKind KindOfMode(mode_t mode) {
    if (S_ISREG(mode))
        return EntryKind::regular;
    if (S_ISDIR(mode))
        return EntryKind::directory;
    return S_ISLNK(mode) ? EntryKind::link : EntryKind::special;
}

EntryStatus StatusOf(const struct stat& found) {
    EntryStatus status;
    status.kind = KindOfMode(found.st_mode);
    status.size = status.kind == EntryKind::regular ? static_cast<std::uint64_t>(found.st_size) : 0;
    status.identity = {found.st_dev, found.st_ino};
    status.modified = Nanoseconds(found.st_mtim);
    return status;
}

} // namespace platform
