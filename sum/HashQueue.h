// SPDX-License-Identifier: MIT
// Hashing many files.
#pragma once

#include "sum/FileHasher.h"

#include <functional>

namespace sum {

// Hashes many files and tells of each in the order in which they were added, from the thread that
// adds them.
class HashQueue {
  public:
    using Done = std::function<void(const FileResult&)>;

    explicit HashQueue(unsigned jobs, ReadWatcher* watcher = nullptr);
    HashQueue(const HashQueue&) = delete;
    HashQueue& operator=(const HashQueue&) = delete;
    ~HashQueue(); // drops what is not done yet

    // Takes a file in; may call what is done, this one included. What `done` throws comes out here
    // or in Finish.
    void Add(Name name, FunctionSet functions, Done done);

    // Takes in what is no file but has its place in the order.
    void AddNote(std::function<void()> note);

    // Returns when all is done and told.
    void Finish();

  private:
    FileHasher hasher_;
};

} // namespace sum
