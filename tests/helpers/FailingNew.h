// SPDX-License-Identifier: MIT
// Memory that runs out on request, and memory that is looked at when it is freed. A program that links this library
// has its operators new and delete replaced, aligned ones included; they work as usual but while an object of these classes lives, one at
// a time.
#pragma once

#include <cstddef>
#include <optional>

namespace helpers {

class FailingNew {
  public:
    // Every allocation of exactly `bytes` throws std::bad_alloc.
    static FailingNew OfSize(std::size_t bytes) { return {bytes, 0, false}; }

    // The n-th allocation from now on throws; 1 is the next one.
    static FailingNew OfTurn(std::size_t n) { return {0, n, false}; }

    static FailingNew Always() { return {0, 0, true}; }

    ~FailingNew();
    FailingNew(const FailingNew&) = delete;
    FailingNew& operator=(const FailingNew&) = delete;

    // How many allocations have thrown so far.
    std::size_t Failures() const { return failures_; }

    // Counts an allocation of `bytes` and tells whether it is to fail.
    bool Refuses(std::size_t bytes);

  private:
    FailingNew(std::size_t size, std::size_t turn, bool always);

    std::size_t size_;
    std::size_t turn_;
    bool always_;
    std::size_t count_ = 0;
    std::size_t failures_ = 0;
};

// Watches the next allocation of exactly `bytes`.
class WatchedNew {
  public:
    explicit WatchedNew(std::size_t bytes);
    ~WatchedNew();
    WatchedNew(const WatchedNew&) = delete;
    WatchedNew& operator=(const WatchedNew&) = delete;

    // How many zero bytes it began with when it was freed; nothing as long as it was not.
    std::optional<std::size_t> ZerosWhenFreed() const { return zeros_; }

    void Allocated(const void* memory, std::size_t bytes);
    void Freed(const void* memory);

  private:
    std::size_t size_;
    const unsigned char* memory_ = nullptr;
    std::optional<std::size_t> zeros_;
};

} // namespace helpers
