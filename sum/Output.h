// SPDX-License-Identifier: MIT
// Where lines of results go.
#pragma once

#include "platform/NewFile.h"
#include "sum/Name.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <string_view>

namespace sum {

// A line could not be written. The run ends with a message and status 1.
class OutputError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Takes lines of results.
class LineSink {
  public:
    virtual ~LineSink() = default;

    // Takes one or more whole lines, their ends included. Throws OutputError.
    virtual void Write(std::string_view lines) = 0;
};

// Standard output. Lines are held back for a short time and written in pieces that end with a line,
// each in one call and not longer than a pipe takes whole, so that the lines of parallel runs do
// not mix.
class StandardOutput : public LineSink {
  public:
    void Write(std::string_view lines) override;

    // Writes what is held back. Throws OutputError.
    void Flush();

  private:
    void WriteNow(std::string_view lines);

    std::string held_;
    std::chrono::steady_clock::time_point lastWrite_;
    bool failed_ = false;
};

// The one of this process.
StandardOutput& Out();

// A file that appears under its name when it is complete, and not at all if it never is.
class OutputFile : public LineSink {
  public:
    // Throws OutputError.
    explicit OutputFile(Name name);

    void Write(std::string_view lines) override;

    // See platform::NewFile.
    void TakeRightsOf(const Name& name) { file_.TakeRightsOf(name); }

    // Writes the rest and names the file. Throws OutputError.
    void Complete();

    const Name& FileName() const { return name_; }
    platform::FileIdentity Identity() const { return file_.Identity(); }

  private:
    void Check(int error) const;

    Name name_;
    platform::NewFile file_;
    std::string held_;
};

} // namespace sum
