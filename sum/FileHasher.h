// SPDX-License-Identifier: MIT
// Hashing whole files, each read once for all functions.
#pragma once

#include "platform/ByteFile.h"
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
    platform::EntryStatus status = {};           // what was opened, before it was read
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

// Which files are opened: whatever has the name, or only what cannot keep the reader waiting (see
// platform::ByteFile::OpenStored). Standard input is always read.
enum class Opening { anything, stored };

// Opens the file, "-" for standard input. Sets `error` to 0 or errno. Throws std::bad_alloc.
platform::ByteFile OpenToHash(const Name& name, Opening opening, int& error);

// Hashes one file after the other in one thread.
class FileHasher {
  public:
    // The watcher is not owned.
    FileHasher(ReadWatcher* watcher, Opening opening);
    FileHasher(const FileHasher&) = delete;
    FileHasher& operator=(const FileHasher&) = delete;
    ~FileHasher();

    // Reads the file, "-" for standard input, to its end. A directory gives EISDIR. Throws
    // std::bad_alloc.
    FileResult Hash(const Name& name, const FunctionSet& functions);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace sum
