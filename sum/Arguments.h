// SPDX-License-Identifier: MIT
// Telling options from operands, by the rules of GNU's getopt_long.
#pragma once

#include "sum/OptionTable.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

struct GivenOption {
    OptionId id;
    std::string argument;
};

// Takes the arguments one after the other.
class Arguments {
  public:
    Arguments(const Tool& tool, std::span<const std::string> arguments) : tool_(tool), rest_(arguments) {}

    // The next option; nothing when there is none left, and all operands are known. Throws
    // UsageError.
    std::optional<GivenOption> Next();

    const std::vector<std::string>& Operands() const { return operands_; }

  private:
    GivenOption Long(std::string_view text);
    GivenOption Short();
    const OptionRow& FindLong(std::string_view name, std::string_view text) const;
    std::string Take();

    const Tool& tool_;
    std::span<const std::string> rest_;
    std::string_view letters_; // of one argument, not yet read
    std::vector<std::string> operands_;
};

} // namespace sum
