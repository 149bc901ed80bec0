// SPDX-License-Identifier: MIT
// The lines of a list that the command line names, and what its options say about them.
#pragma once

#include "platform/ByteFile.h"
#include "sum/Guess.h"
#include "sum/ListLines.h"
#include "sum/Options.h"

#include <cstddef>
#include <span>

namespace sum {

// A list could not be read to its end.
struct ListError {
    int error; // errno
};

class ListFile {
  public:
    // Options and name are not copied.
    ListFile(const Options& options, const Name& list, const ListFunctions& functions);
    ListFile(const ListFile&) = delete;
    ListFile& operator=(const ListFile&) = delete;

    // Opens the list, "-" for standard input. Returns 0 or errno.
    int Open();

    // Whether the list is stored, and can be read again.
    bool IsStored() const;

    // The next line; LineKind::entry or malformed, or end. Throws ListError.
    LineKind Next(ListLine& line);

  private:
    std::size_t Read(std::span<char> space);

    const Options& options_;
    const Name& list_;
    platform::ByteFile file_;
    ListReader reader_;
    ListLines lines_;
};

// The functions that the options name for a list.
GivenFunctions FunctionsGivenBy(const Options& options);

} // namespace sum
