// SPDX-License-Identifier: MIT
// Reading the command line.
#pragma once

#include "sum/Options.h"
#include "sum/Tool.h"

#include <span>
#include <stdexcept>
#include <string>

namespace sum {

// A command line that makes no sense. The message is said, then how to get help, and the status is
// 1.
class UsageError : public std::runtime_error {
  public:
    enum class Advice { help, none };

    explicit UsageError(const std::string& message, Advice advice = Advice::help)
        : std::runtime_error(message), advice_(advice) {}

    bool GivesAdvice() const { return advice_ == Advice::help; }

  private:
    Advice advice_;
};

// Thrown by an option that shows something and ends the run with status 0.
struct Instead {
    enum class Page { help, version, functions };
    Page page;
};

// What the arguments, without the program's name, ask for. Options and names may be mixed, long
// options shortened; "--" ends the options. Throws UsageError, Instead, and OutputError.
Options ReadCommandLine(const Tool& tool, std::span<const std::string> arguments);

} // namespace sum
