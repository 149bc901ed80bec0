// SPDX-License-Identifier: MIT
// What is remembered of files beside a list: JSON Lines with path, size, time and digests.
#pragma once

#include "sum/Name.h"
#include "sum/NameFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sum {

struct StateRecord {
    Name path;
    std::uint64_t size = 0;               // bytes
    std::optional<std::int64_t> modified; // ns since 1970; none: the file was too young to be trusted
    bool stale = false; // the digests are those that are listed, but the file was found to have others
    std::vector<std::pair<std::string, std::string>> digests; // the function as -a names it, and hex

    // A line and its end.
    std::string Line() const;
};

// Fills the record from a line without its end. False when the line is none that Line writes, as
// one that a killed run left incomplete. Members that are not known are passed over.
bool ReadStateRecord(std::string_view line, StateRecord& record);

// Reads a file of records.
class StateFile {
  public:
    // A file that is not there has no records.
    explicit StateFile(const Name& name) : lines_(name, '\n') {}

    // The next record; false at the end. Lines that are none are passed over.
    bool Next(StateRecord& record);

  private:
    NameFile lines_;
};

} // namespace sum
