// SPDX-License-Identifier: MIT
// What the comparison of a list with a tree comes to.
#pragma once

#include "sum/Entries.h"
#include "sum/Options.h"

#include <array>
#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

namespace sum {

// Every entry and every file is in exactly one of these; one that was renamed is both.
enum class Outcome : std::uint8_t {
    same,
    isNew,
    missing,
    changed,
    changedUnseen, // size and time are those of the content that is listed
    renamed,
    copy,
    unread,
    leftOut, // an entry outside the tree that is compared
};

inline constexpr std::size_t outcomeCount = 9;

// "OK", "NEW", "MISSING"...
std::string_view TextOf(Outcome outcome);

Outcome OutcomeOf(const Entry& entry);
Outcome OutcomeOf(const FoundFile& file);

// Whether the list is to tell what the file is now.
bool IsAccepted(Outcome outcome, Acceptance acceptance);

struct Finding {
    Outcome outcome;
    const Entry* entry;    // none for a file that is not listed
    const FoundFile* file; // what is not listed
    std::string_view key;
};

using Totals = std::array<std::uint64_t, outcomeCount>;

// Everything that differs, or with `all` everything, sorted by path.
std::vector<Finding> FindingsOf(const Entries& entries, const std::deque<FoundFile>& files, bool all);

Totals TotalsOf(const Entries& entries, const std::deque<FoundFile>& files);

} // namespace sum
