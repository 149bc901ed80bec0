// SPDX-License-Identifier: MIT
// What is said of the files of one list, and the sum of it.
#pragma once

#include "sum/Functions.h"
#include "sum/Name.h"
#include "sum/Options.h"

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace sum {

// Every entry and every malformed line counts in exactly one of these.
struct CheckTotals {
    std::uint64_t good = 0;
    std::uint64_t different = 0;
    std::uint64_t unread = 0;
    std::uint64_t missing = 0; // with --ignore-missing; otherwise a missing file is unread
    std::uint64_t malformed = 0;
    std::uint64_t unknown = 0; // of the malformed ones, those of functions that are not known
};

// Results go to standard output and trouble to standard error, in the words of GNU's tools. Throws
// OutputError.
class CheckReport {
  public:
    CheckReport(const Options& options, const Name& list);

    // What came of a listed file: an errno of reading it, or 0 and whether it is as listed.
    void File(const Name& name, int error, bool holds);

    // The list names standard input, which is the list itself.
    void ListItself(const Name& name);

    void Malformed(std::uint64_t line);
    // A malformed line too. Said once for each function, and not for very many.
    void UnknownFunction(std::uint64_t line, std::string_view tag);

    // Says how many lines were malformed.
    void WarnOfMalformed() const;

    // What the digests turned out to be of.
    void Guessed(const FunctionChoice& choice);
    void ListUnreadable();

    // Says the totals. True when they are as they should be.
    bool Finish();

    const CheckTotals& Totals() const { return totals_; }

  private:
    void Print(const Name& name, std::string_view result);
    void Unread(const Name& name);
    void SayOfList(std::string_view text);

    const Options& options_;
    std::string list_;  // as messages name it
    std::string lines_; // "SHA256 checksum line"
    std::set<std::string, std::less<>> unknownTags_;
    CheckTotals totals_;
};

} // namespace sum
