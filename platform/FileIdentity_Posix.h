// SPDX-License-Identifier: MIT
// What makes two names the same file.
#pragma once

#include <sys/stat.h>

namespace platform {

struct FileIdentity {
    dev_t device;
    ino_t inode;

    explicit FileIdentity(const struct stat& status) : device(status.st_dev), inode(status.st_ino) {}

    bool operator==(const FileIdentity&) const = default;
};

} // namespace platform
