// SPDX-License-Identifier: MIT
// What a run has hashed so far, for one that continues it after a kill.
#pragma once

#include "platform/GrowingFile.h"
#include "sum/FileHasher.h"
#include "sum/Name.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

namespace sum {

// A file of records like those of StateFile.h, which grows while the run goes on. All members throw
// OutputError.
class Journal {
  public:
    // Reads what an earlier run left, and goes on writing there. `start` is when this run began.
    Journal(const Name& name, FunctionSet functions, std::int64_t start);

    // The result of a file that was hashed before and has the same size and time still.
    std::optional<FileResult> Find(const Name& file) const;

    // Remembers the result, unless the file is so young that its time tells nothing.
    void Add(const Name& file, const FileResult& result);

    // The run is complete: the journal goes.
    void Remove();

  private:
    struct Known {
        std::uint64_t size;
        std::int64_t modified;
        std::string digests; // one after the other
    };

    void Load();
    void Flush();
    void Check(int error) const;

    const Name name_;
    const FunctionSet functions_;
    const std::int64_t start_;
    std::unordered_map<Name, Known> known_;
    platform::GrowingFile file_;
    std::string held_;
    std::chrono::steady_clock::time_point lastWrite_ = std::chrono::steady_clock::now();
};

// The name of the journal beside a list.
Name JournalOf(const Name& list);

} // namespace sum
