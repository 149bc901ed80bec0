// SPDX-License-Identifier: MIT
// Which part of a list a comparison is about.
#pragma once

#include "platform/Tree.h"
#include "sum/Name.h"
#include "sum/Options.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace sum {

// The files that the operands name, those that are not there any more included. All keys are of
// paths as the list has them.
class Scope {
  public:
    // Of the options of the walk, which are not copied.
    explicit Scope(const Options& options);

    // Whether an operand names the path, and no rule leaves it out.
    bool Holds(std::string_view key) const;

    bool IsOperand(std::string_view key) const;

    // Where the operand of a path stands in the command line; the number of operands for none.
    std::size_t PlaceOf(std::string_view key) const;

    // Remembers that something below this path, or the path itself, could not be looked at. False
    // when that is known.
    bool AddTrouble(std::string_view key, std::uint32_t reason);

    // Why nothing is known of the path, if that is so.
    std::optional<std::uint32_t> TroubleAbove(std::string_view key) const;

    // The path as the walk would have met it.
    Name PathOf(std::string_view key) const;

    // With --one-file-system: whether the file is on another one than its operand.
    bool IsOnOtherFileSystem(std::string_view key, const platform::EntryStatus& status) const;

  private:
    struct Operand {
        Name path;
        Name key;
    };

    const Operand* OperandOf(std::string_view key) const;
    static Name PathBelow(const Operand& operand, std::string_view key);

    const Options& options_;
    std::vector<Operand> operands_;
    std::unordered_map<Name, std::uint32_t> troubles_;
};

} // namespace sum
