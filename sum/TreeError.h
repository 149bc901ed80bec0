// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace sum {

// Why a list and a tree cannot be compared, or the list not be updated. The run ends with the
// message and with treeTrouble.
class TreeError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The status of a comparison that is not complete.
inline constexpr int treeTrouble = 2;

} // namespace sum
