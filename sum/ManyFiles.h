// SPDX-License-Identifier: MIT
// Several files at once in one thread: a piece of each is read, and the pieces are hashed side by
// side.
#pragma once

#include "platform/ByteFile.h"
#include "sum/FileHasher.h"
#include "sum/ReadBuffer.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

namespace sum {

// A file to hash, and what came of it.
struct HashJob {
    Name name;
    FunctionSet functions;
    Opening opening = Opening::anything;
    FileResult result = {};
    bool isDone = false; // for the owner's use
};

class ManyFiles {
  public:
    // Adds what it reads to `bytesRead`, which is not owned.
    explicit ManyFiles(std::atomic<std::uint64_t>& bytesRead) : bytesRead_(bytesRead) {}
    ManyFiles(const ManyFiles&) = delete;
    ManyFiles& operator=(const ManyFiles&) = delete;

    // How many more files the functions of such a job want at a time.
    std::size_t Room(const HashJob& job) const;

    bool IsIdle() const { return busy_ == 0; }

    // Begins to hash the file of a job, which stays the caller's. What cannot be opened is done at
    // once, and so is what is no regular file: it may keep its reader waiting.
    void Begin(HashJob& job, std::vector<HashJob*>& done);

    // Reads and hashes a piece of every file. Adds the jobs that are done, with their results.
    void Step(std::vector<HashJob*>& done);

  private:
    struct Slot {
        HashJob* job = nullptr; // none: the slot is free
        platform::ByteFile file;
        FunctionSet functions; // that `hashers` are of
        std::vector<fyrn::Hasher> hashers;
        ReadBuffer buffer;
        std::size_t fill = 0;
        std::int64_t left = 0; // bytes of the file that its size promised; -1: not known
        bool atEnd = false;
        bool isTimed = false; // how long the next read takes is to be noted
    };

    Slot& FreeSlot();
    void Start(Slot& slot, HashJob& job);
    void Read(Slot& slot);
    std::ptrdiff_t ReadSome(Slot& slot);
    void HashPieces();
    void Finish(Slot& slot, std::vector<HashJob*>& done);
    void FailAll(int error, std::vector<HashJob*>& done);

    std::atomic<std::uint64_t>& bytesRead_;
    std::deque<Slot> slots_; // does not move them
    std::size_t busy_ = 0;

    // What HashPieces hands over, kept for its memory.
    std::vector<fyrn::Hasher*> hashers_;
    std::vector<std::span<const std::byte>> pieces_;
};

} // namespace sum
