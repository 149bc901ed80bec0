// SPDX-License-Identifier: MIT
// The names of a directory as they were at one moment, in order, in as little memory as their bytes need.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace platform {

class Snapshot {
  public:
    struct Entry {
        std::string name;
        unsigned char type; // a DT_ constant of the directory entry
    };

    // Reads the whole directory and keeps the names that `accepts` returns true for: "." and ".." first, then
    // in the order of their upper-cased (ASCII) bytes, then of their bytes. A directory that cannot be read has
    // none. Throws std::bad_alloc.
    Snapshot(const char* directory, const std::function<bool(std::string_view name)>& accepts);

    // Hands out the next entry and forgets it; false at the end.
    bool TakeNext(Entry& entry);

  private:
    std::string records_; // of every entry left, the last one first: zero, type, name
};

} // namespace platform
