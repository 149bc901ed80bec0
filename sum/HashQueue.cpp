// SPDX-License-Identifier: MIT
#include "sum/HashQueue.h"

#include "platform/ReadAhead.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

namespace sum {

namespace {

constexpr std::size_t maxEntries = 4096;       // that wait to be told
constexpr std::size_t enoughForOneThread = 80; // files that wait, so that no lane is ever empty
constexpr unsigned maxThreads = 256;
constexpr std::chrono::milliseconds betweenLooks{100};

void AnnounceAll(const std::vector<Name>& names) {
    for (const Name& name : names)
        if (name != "-")
            platform::Announce(name.c_str());
}

} // namespace

HashQueue::HashQueue(unsigned jobs, ReadWatcher* watcher, Opening opening)
    : jobs_(jobs), watcher_(watcher), opening_(opening) {}

HashQueue::~HashQueue() {
    {
        const std::lock_guard lock(mutex_);
        stop_ = true;
        waiting_.clear();
        announced_ = 0;
    }
    jobCame_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void HashQueue::Add(Name name, FunctionSet functions, Done done) {
    auto entry = std::make_unique<Entry>();
    entry->job = {.name = std::move(name), .functions = std::move(functions), .opening = opening_};
    entry->done = std::move(done);
    Append(std::move(entry), true);
}

void HashQueue::AddNote(std::function<void()> note) {
    auto entry = std::make_unique<Entry>();
    entry->note = std::move(note);
    Append(std::move(entry), false);
}

void HashQueue::Append(std::unique_ptr<Entry> entry, bool isFile) {
    if (watcher_ != nullptr && isFile)
        watcher_->Begin(entry->job.name);
    std::unique_lock lock(mutex_);
    if (isFile)
        waiting_.push_back(entry.get());
    entries_.push_back(std::move(entry));
    if (jobs_ > 1 && threads_.empty() && waiting_.size() > 1)
        StartThreads();
    if (!threads_.empty())
        jobCame_.notify_one();
    TellReady(lock);
    while (!threads_.empty() && entries_.size() >= maxEntries)
        WaitForFront(lock);
    lock.unlock();
    if (threads_.empty() && entries_.size() >= maxEntries) // a file, and then notes only
        HashHere(0);
    else if (jobs_ == 1)
        HashHere(enoughForOneThread);
    TellWatcher();
}

// A single file needs none. Where the system gives fewer threads than wanted, these do all the work.
void HashQueue::StartThreads() {
    try {
        for (unsigned i = 0; i < std::min(jobs_, maxThreads); ++i)
            threads_.emplace_back([this] {
                ManyFiles files(bytesRead_);
                Work(files);
            });
    } catch (const std::system_error&) {
        if (threads_.empty())
            jobs_ = 1;
    }
}

// What a thread does: it takes jobs as long as there are any, and goes on with those that it has.
void HashQueue::Work(ManyFiles& files) {
    std::vector<HashJob*> taken;
    std::vector<HashJob*> done;
    std::vector<Name> next;
    for (;;) {
        {
            std::unique_lock lock(mutex_);
            if (files.IsIdle())
                jobCame_.wait(lock, [this] { return stop_ || !waiting_.empty(); });
            if (stop_)
                return;
            TakeJobs(files, taken, next);
        }
        AnnounceAll(next);
        for (HashJob* const job : taken)
            files.Begin(*job, done);
        if (!files.IsIdle())
            files.Step(done);
        MarkDone(done);
    }
}

// Takes this thread's share of what waits: two files are better off in two threads than in two lanes. Names the files
// that come next, where they are to be announced.
void HashQueue::TakeJobs(ManyFiles& files, std::vector<HashJob*>& taken, std::vector<Name>& next) {
    taken.clear();
    next.clear();
    if (waiting_.empty())
        return;
    const std::size_t share = (waiting_.size() + jobs_ - 1) / jobs_;
    const std::size_t count = std::min(files.Room(waiting_.front()->job), share);
    for (std::size_t i = 0; i < count; ++i) {
        taken.push_back(&waiting_.front()->job);
        waiting_.pop_front();
        if (announced_ != 0)
            --announced_;
    }
    while (announced_ < std::min(waiting_.size(), platform::filesAhead) && platform::readPace.TakeFile())
        next.push_back(waiting_[announced_++]->job.name);
}

void HashQueue::MarkDone(std::vector<HashJob*>& done) {
    if (done.empty())
        return;
    const std::lock_guard lock(mutex_);
    for (HashJob* const job : done)
        job->isDone = true;
    done.clear();
    jobDone_.notify_one();
}

// Hashes in this thread until at most so many files wait.
void HashQueue::HashHere(std::size_t waitingAllowed) {
    std::vector<HashJob*> taken;
    std::vector<HashJob*> done;
    std::vector<Name> next;
    while (waiting_.size() > waitingAllowed || (waitingAllowed == 0 && !here_.IsIdle())) {
        TakeJobs(here_, taken, next);
        AnnounceAll(next);
        for (HashJob* const job : taken)
            here_.Begin(*job, done);
        here_.Step(done);
        MarkDone(done);
        std::unique_lock lock(mutex_);
        TellReady(lock);
        lock.unlock();
        TellWatcher();
    }
}

// Calls what is done, with the lock released meanwhile.
void HashQueue::TellReady(std::unique_lock<std::mutex>& lock) {
    while (!entries_.empty() && entries_.front()->IsReady()) {
        const std::unique_ptr<Entry> entry = std::move(entries_.front());
        entries_.pop_front();
        lock.unlock();
        if (entry->note)
            entry->note();
        else
            entry->done(entry->job.result);
        lock.lock();
    }
}

// Waits until the front is done, or for a while.
void HashQueue::WaitForFront(std::unique_lock<std::mutex>& lock) {
    if (!entries_.front()->IsReady()) {
        lock.unlock();
        if (watcher_ != nullptr)
            watcher_->WillWait();
        TellWatcher();
        lock.lock();
        jobDone_.wait_for(lock, betweenLooks, [this] { return entries_.front()->IsReady(); });
    }
    TellReady(lock);
}

void HashQueue::Finish() {
    if (threads_.empty()) {
        HashHere(0);
    } else {
        std::unique_lock lock(mutex_);
        while (!entries_.empty())
            WaitForFront(lock);
    }
    std::unique_lock lock(mutex_);
    TellReady(lock);
    lock.unlock();
    TellWatcher();
}

void HashQueue::TellWatcher() {
    const std::uint64_t read = bytesRead_.load(std::memory_order_relaxed);
    if (watcher_ != nullptr && read != bytesTold_)
        watcher_->Read(static_cast<std::size_t>(read - bytesTold_));
    bytesTold_ = read;
}

} // namespace sum
