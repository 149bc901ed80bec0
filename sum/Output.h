// SPDX-License-Identifier: MIT
// Where lines of results go.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace sum {

// A line could not be written. The run ends with a message and status 1.
class OutputError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Standard output. Lines are held back for a short time and written in pieces that end with a line, each in one call and
// not longer than a pipe takes whole, so that the lines of parallel runs do not mix.
class StandardOutput {
  public:
    // Takes one or more whole lines, their ends included. Throws OutputError.
    void Write(std::string_view lines);

    // Writes what is held back. Throws OutputError.
    void Flush();

  private:
    std::string held_;
};

// The one of this process.
StandardOutput& Out();

} // namespace sum
