// SPDX-License-Identifier: MIT
// How far a long run has come, on the line of platform/Status.h: file, function, bytes, speed and time left.
#pragma once

#include "app/ProgressText.h"
#include "app/ReadSpeed.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

class Progress {
  public:
    using Clock = std::chrono::steady_clock;

    Progress() = default;
    ~Progress(); // takes the line away
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // Begins a run that computes so many functions of every file. A run that soon ends shows nothing.
    void BeginRun(unsigned int functionCount);

    // What is read from now on. The path stays valid until the next call.
    void BeginFile(const wchar_t* path);
    void BeginRow(const wchar_t* function);
    void BeginReading(std::int64_t size);

    // So many more bytes were read.
    void Count(std::size_t bytes);

    // Shows the line when its time has come, where a user can see it. Some bytes have been counted.
    void ShowInTime(Clock::time_point now) noexcept;

  private:
    ProgressState state_;
    ReadSpeed speed_;
    Clock::time_point next_ = Clock::time_point::max(); // when the line is shown again
};
