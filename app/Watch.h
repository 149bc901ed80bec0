// SPDX-License-Identifier: MIT
// Looks at the clock now and then while files are read, and lets happen what is due: the report is passed on, the
// progress shown. There is no timer and no thread.
#pragma once

#include "app/Progress.h"
#include "app/Report.h"
#include "support/ReadObserver.h"

class Watch final : private ReadObserver {
  public:
    // Watches from now on. One at a time, and both arguments outlive it.
    Watch(Report& report, Progress& progress);
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

  private:
    void Begin(std::int64_t size) noexcept override;
    bool Read(std::size_t count) noexcept override;
    void Look() noexcept;

    Report& report_;
    Progress& progress_;
    std::size_t sinceLook_ = 0; // bytes since the clock was looked at
};
