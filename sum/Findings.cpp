// SPDX-License-Identifier: MIT
#include "sum/Findings.h"

#include <algorithm>

namespace sum {

std::string_view TextOf(Outcome outcome) {
    constexpr std::array<std::string_view, outcomeCount> texts = {
        "OK",      "NEW",  "MISSING",  "CHANGED", "CHANGED, same size and time",
        "RENAMED", "COPY", "NOT READ", "LEFT OUT"};
    return texts[static_cast<std::size_t>(outcome)];
}

Outcome OutcomeOf(const Entry& entry) {
    switch (entry.state) {
    case Entry::Found::same:
        return Outcome::same;
    case Entry::Found::changed:
        break;
    case Entry::Found::unread:
        return Outcome::unread;
    case Entry::Found::unmet:
    case Entry::Found::missing:
        return entry.file != nullptr ? Outcome::renamed : Outcome::missing;
    case Entry::Found::leftOut:
        return Outcome::leftOut;
    }
    const bool looksTheSame = entry.listed.hasTime && entry.found->size == entry.listed.size &&
                              entry.found->modified == entry.listed.modified;
    return looksTheSame ? Outcome::changedUnseen : Outcome::changed;
}

Outcome OutcomeOf(const FoundFile& file) {
    switch (file.kind) {
    case FoundFile::Kind::renamed:
        return Outcome::renamed;
    case FoundFile::Kind::copy:
        return Outcome::copy;
    case FoundFile::Kind::unread:
        return Outcome::unread;
    case FoundFile::Kind::isNew:
    case FoundFile::Kind::ignored:
        break;
    }
    return Outcome::isNew;
}

bool IsAccepted(Outcome outcome, Acceptance acceptance) {
    if (outcome == Outcome::changedUnseen)
        return acceptance == Acceptance::all;
    return outcome == Outcome::changed && acceptance != Acceptance::none;
}

namespace {

// A renamed file is told once, under its new name.
template <class See>
void ForEach(const Entries& entries, const std::deque<FoundFile>& files, See see) {
    for (const Entry& entry : entries.All())
        if (entry.file == nullptr)
            see(Finding{OutcomeOf(entry), &entry, nullptr, entry.key});
    for (const FoundFile& file : files)
        if (file.kind != FoundFile::Kind::ignored)
            see(Finding{OutcomeOf(file), nullptr, &file, file.key});
}

} // namespace

std::vector<Finding> FindingsOf(const Entries& entries, const std::deque<FoundFile>& files, bool all) {
    std::vector<Finding> findings;
    ForEach(entries, files, [&](const Finding& finding) {
        if (all || (finding.outcome != Outcome::same && finding.outcome != Outcome::leftOut))
            findings.push_back(finding);
    });
    std::ranges::sort(findings, {}, &Finding::key);
    return findings;
}

Totals TotalsOf(const Entries& entries, const std::deque<FoundFile>& files) {
    Totals totals{};
    ForEach(entries, files,
            [&](const Finding& finding) { ++totals[static_cast<std::size_t>(finding.outcome)]; });
    return totals;
}

} // namespace sum
