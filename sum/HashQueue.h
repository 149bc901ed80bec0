// SPDX-License-Identifier: MIT
// Hashing many files: in threads, each of which has several files at hand, and told in order.
#pragma once

#include "sum/ManyFiles.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace sum {

// Hashes many files and tells of each in the order in which they were added, from the thread that
// adds them. What waits to be told is bounded, whatever the number of files.
class HashQueue {
  public:
    using Done = std::function<void(const FileResult&)>;

    // Hashes in `jobs` threads; with one job, in the thread that adds. The watcher, which is not
    // owned, is called by that thread alone.
    explicit HashQueue(unsigned jobs, ReadWatcher* watcher = nullptr, Opening opening = Opening::anything);
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
    // A place in the order: a file, or a note.
    struct Entry {
        HashJob job;
        Done done;
        std::function<void()> note;

        bool IsReady() const { return note || job.isDone; }
    };

    void Append(std::unique_ptr<Entry> entry, bool isFile);
    void StartThreads();
    void Work(ManyFiles& files);
    void TakeJobs(ManyFiles& files, std::vector<HashJob*>& taken, std::vector<Name>& next);
    void MarkDone(std::vector<HashJob*>& done);
    void HashHere(std::size_t waitingAllowed);
    void TellReady(std::unique_lock<std::mutex>& lock);
    void WaitForFront(std::unique_lock<std::mutex>& lock);
    void TellWatcher();

    unsigned jobs_;
    ReadWatcher* const watcher_;
    const Opening opening_;

    std::mutex mutex_; // of the entries and of `stop_`
    std::condition_variable jobCame_;
    std::condition_variable jobDone_;
    std::deque<std::unique_ptr<Entry>> entries_; // in order; the front is told next
    std::deque<Entry*> waiting_;                 // files that nobody has begun
    std::size_t announced_ = 0;                  // of these, from the front, that the system was told of
    bool stop_ = false;

    std::atomic<std::uint64_t> bytesRead_{0};
    std::uint64_t bytesTold_ = 0;
    ManyFiles here_{bytesRead_}; // of the thread that adds
    std::vector<std::thread> threads_;
};

} // namespace sum
