// SPDX-License-Identifier: MIT
// Directories and what stands in them, by names that are bytes (see ByteFile.h). Nothing is changed
// by looking.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace platform {

enum class EntryKind { regular, directory, link, special };

// Tells one file of the system from all others.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t number = 0;

    bool operator==(const FileIdentity&) const = default;
};

struct EntryStatus {
    EntryKind kind = EntryKind::special;
    std::uint64_t size = 0; // bytes, of a regular file
    FileIdentity identity;
    std::int64_t modified = 0; // nanoseconds since 1970; the largest number where these do not fit
};

// Looks at what has this name: at a link itself, or with `follow` at what it leads to. Returns 0 or
// errno. Throws std::bad_alloc.
int LookAt(const std::string& name, bool follow, EntryStatus& status);

// The directory that a name begins with, its separator included, so that what follows is the last
// component.
std::size_t LengthOfDirectory(std::string_view name);

// Calls `found` with each entry of a directory but "." and "..", in the system's order. Returns 0
// or errno. Throws what `found` throws, and std::bad_alloc.
int ListDirectory(const std::string& name,
                  const std::function<void(std::string_view entry, EntryKind kind)>& found);

} // namespace platform
