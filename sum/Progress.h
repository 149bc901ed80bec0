// SPDX-License-Identifier: MIT
// How far a long run has come, for a user who waits: on the line of platform/Status.h.
#pragma once

#include "sum/FileHasher.h"
#include "sum/Options.h"

#include <chrono>
#include <cstdint>

namespace sum {

// What there is to do, and what is done of it.
struct Amount {
    std::uint64_t files = 0;
    std::uint64_t bytes = 0;
};

// Also passes on that standard output should not hold lines back any longer.
class Progress : public ReadWatcher {
  public:
    explicit Progress(const Options& options);
    ~Progress() override;

    // Whether anybody will see it, so that it is worth while to find out the total.
    bool IsShown() const { return shown_; }

    void SetTotal(const Amount& total) { total_ = total; }

    void Begin(const Name& name) override;
    void WillWait() override;
    void Read(std::size_t bytes) override;

  private:
    using Clock = std::chrono::steady_clock;

    void Look();
    void Show(Clock::time_point now);

    bool shown_ = false;
    Amount total_;
    Amount done_;
    Name name_;
    std::size_t sinceLook_ = 0; // bytes since the clock was looked at
    Clock::time_point start_;
    Clock::time_point next_; // when the line is shown again
};

} // namespace sum
