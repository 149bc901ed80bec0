// SPDX-License-Identifier: MIT
// Paths as they are compared, whatever their spelling.
#pragma once

#include "sum/Name.h"

#include <string_view>

namespace sum {

// The path without "./", without doubled separators and without one at its end, on Windows with
// slashes only: "" for the current directory. ".." stays, since a link may stand before it. Returns
// a part of `name`, or `buffer` where that will not do.
std::string_view KeyOf(std::string_view name, Name& buffer);

// Whether the path is the directory or lies below it. Both are keys.
bool IsWithin(std::string_view path, std::string_view directory);

// The last component of a key.
std::string_view BaseOf(std::string_view key);

} // namespace sum
