// SPDX-License-Identifier: MIT
// Memory that runs out on request. A program that links this library has its operator new replaced; it works
// as usual but while an object of this class lives, one at a time.
#pragma once

#include <cstddef>

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

} // namespace helpers
