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

    // What stands behind that: the records, and what they are taken for.
    const ListReader& Reader() const { return reader_; }
    ListReader& Reader() { return reader_; }
    ListLines& Lines() { return lines_; }

    // Takes lines in as this list has them, from its beginning.
    ListLines OtherLines() { return {reader_, rules_}; }

    // Whether names are those of BagIt manifests.
    bool HasPercentNames() const { return rules_.percent; }

  private:
    std::size_t Read(std::span<char> space);

    const Options& options_;
    const Name& list_;
    platform::ByteFile file_;
    LineRules rules_;
    ListReader reader_;
    ListLines lines_;
};

// The functions that the options name for a list.
GivenFunctions FunctionsGivenBy(const Options& options);

} // namespace sum
