// SPDX-License-Identifier: MIT
// The functions that --algorithm and --length ask for together.
#pragma once

#include "sum/Functions.h"
#include "sum/Tool.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sum {

// All members throw UsageError, with the texts of GNU's tools.
class FunctionRequest {
  public:
    explicit FunctionRequest(const Tool& tool) : tool_(tool) {}

    // The argument of --algorithm: one name, or for fyrnsum several with commas between them.
    void Add(std::string_view names);

    // The argument of --length.
    void SetLength(const std::string& text);

    // The functions in the order asked for, each once; those of the tool's default when none was
    // named. With `anyLength`, as for a check, a family without a length stands for all of its
    // functions, and a function that has digests of any length is not tied to one.
    std::vector<FunctionChoice> Resolve(bool anyLength) const;

    bool IsGiven() const { return !names_.empty(); }

  private:
    void AddName(std::string_view name);
    [[noreturn]] void FailForName(std::string_view name) const;
    std::vector<FunctionChoice> Family(std::string_view name, bool anyLength) const;
    std::vector<FunctionChoice> Choices(const std::string& name, bool anyLength) const;
    FunctionChoice Sized(fyrn::Function function) const;
    void CheckThatLengthIsOfUse(const std::vector<std::string>& names) const;

    const Tool& tool_;
    std::vector<std::string> names_;
    std::string lengthText_;
    std::optional<std::size_t> bits_; // never 0, which means the function's own
};

} // namespace sum
