// SPDX-License-Identifier: MIT
// The names of one directory at one moment, in the order of a walk, in little memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Names are added in any order, sorted once, and then taken one by one. What was taken is released.
class NameSnapshot {
  public:
    // Adds a name of up to 65,535 bytes with a tag of the caller's. Throws std::bad_alloc.
    void Add(std::string_view name, std::uint8_t tag);

    // Puts "." and ".." first and the others in the order of their names without regard to the case of ASCII
    // letters; names that differ in nothing else, by their bytes. Throws std::bad_alloc.
    void Sort();

    // Takes the next name; false when there is none. The name is valid until the next call.
    bool Take(std::string_view& name, std::uint8_t& tag);

    // Looks at the name behind those that were taken or looked at before; false when there is none. Valid until the
    // next call of Take.
    bool LookAhead(std::string_view& name, std::uint8_t& tag);

    // How many names were looked at and are still to be taken.
    std::size_t LookedAt() const { return lookedAt_; }

  private:
    void ReleaseTaken();

    std::string entries_;           // each: name, length of the name in two bytes, tag
    std::vector<std::size_t> ends_; // of the entries, until they are sorted
    std::size_t taken_ = 0;         // bytes at the end of entries_ that may go
    std::size_t lookedAt_ = 0;
    std::size_t lookEnd_ = 0; // where the entry to be looked at next ends, unless none was looked at
};

} // namespace platform
