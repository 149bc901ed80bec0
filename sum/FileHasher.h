// SPDX-License-Identifier: MIT
// Hashing whole files, each read once for all functions.
#pragma once

#include "sum/Functions.h"
#include "sum/Name.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace sum {

// What came of one file.
struct FileResult {
    int error = 0;                               // errno of opening or reading, or 0
    std::uint64_t size = 0;                      // bytes read
    std::vector<std::vector<std::byte>> digests; // one a function; none after an error
};

// Functions that are computed together. Shared by jobs, since long lists name the same few again
// and again.
using FunctionSet = std::shared_ptr<const std::vector<FunctionChoice>>;

// Follows the reading of files. Called between reads, by the thread that reads.
class ReadWatcher {
  public:
    virtual ~ReadWatcher() = default;
    virtual void Begin(const Name& name) = 0;
    virtual void Read(std::size_t bytes) = 0;

    // Reading may take long, so that lines which are held back should be shown.
    virtual void WillWait() = 0;
};

// Hashes one file after the other in one thread.
class FileHasher {
  public:
    explicit FileHasher(ReadWatcher* watcher = nullptr); // not owned
    FileHasher(const FileHasher&) = delete;
    FileHasher& operator=(const FileHasher&) = delete;
    ~FileHasher();

    // Reads the file, "-" for standard input, to its end. A directory gives EISDIR. Throws
    // std::bad_alloc.
    FileResult Hash(const Name& name, const FunctionSet& functions);

    // The same for a file that is called "-" like standard input, or any other.
    FileResult HashNamed(const Name& name, const FunctionSet& functions);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace sum
