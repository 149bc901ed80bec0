// SPDX-License-Identifier: MIT
// The speed at which a file is read.
#pragma once

#include <chrono>
#include <cstdint>

// Counts from the first bytes on, not from the file's start: the time that a pipe's writer took to begin, or a disk
// to spin up, says nothing about how long the rest will take.
class ReadSpeed {
  public:
    using Clock = std::chrono::steady_clock;

    // Notes how many bytes of the file were read by now, some at least. Returns bytes a second since the first
    // note, or 0 as long as too little time has passed to tell.
    std::int64_t Note(Clock::time_point now, std::int64_t done);

  private:
    bool noted_ = false;
    Clock::time_point start_;
    std::int64_t doneAtStart_ = 0;
};
