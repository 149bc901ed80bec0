// SPDX-License-Identifier: MIT
// Names that stand in a file.
#pragma once

#include "platform/ByteFile.h"
#include "sum/Name.h"

#include <optional>
#include <string>

namespace sum {

// Reads pieces that end with one character, as the user of the names needs them.
class NameFile {
  public:
    // "-" is standard input. A file that cannot be opened is empty, with an error.
    NameFile(const Name& file, char end);

    // The next piece without its end; the last may lack one. Nothing at the end, or after an error.
    std::optional<std::string> Next();

    // errno of opening or reading, or 0.
    int Error() const { return error_; }

  private:
    bool Fill();

    char end_;
    int error_ = 0;
    platform::ByteFile file_;
    std::string buffer_;
    std::size_t place_ = 0; // of what is not given out yet
};

} // namespace sum
