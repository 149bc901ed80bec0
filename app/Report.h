// SPDX-License-Identifier: MIT
// The report of a run on standard output: the header, and for each file its name and its digests.
#pragma once

#include "platform/Directory.h"

#include <chrono>

struct RunContext;

// Thrown where nobody reads the report any more: the run ends there, since all that it could still do unseen is
// to rename files.
struct ReaderGone {};

// What is printed may wait in a buffer, but not for long. Printing needs no memory.
class Report {
  public:
    using Clock = std::chrono::steady_clock;

    // The line that names the selected hash functions, and an empty line.
    void PrintHeader(const RunContext& context);

    // As much of a file's path as the run's verbosity asks for.
    void PrintName(const RunContext& context, const platform::PathParts& parts);

    // The last digest.
    void PrintDigest(const RunContext& context);

    // Passes everything on to the system. True when all that was printed in this run has arrived there, so that
    // no old name is lost when a file is renamed now. Throws ReaderGone.
    bool PassOn();

    // Passes on what has waited for 0.2 s. Called in between, while a file is read.
    void PassOnInTime(Clock::time_point now) noexcept;

    // False when it was noticed that nobody reads what is printed.
    bool HasReader() const noexcept;

    // Throws ReaderGone when that was noticed.
    void ExpectReader() const;

  private:
    Clock::time_point next_; // when text is passed on again
};
