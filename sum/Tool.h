// SPDX-License-Identifier: MIT
// The names under which the program may be called, each with the defaults and options of that tool.
#pragma once

#include <span>
#include <string_view>

namespace sum {

enum class ToolKind : unsigned {
    fyrnsum = 1, // all options
    digest = 2,  // md5sum and its like: one function
    blake2 = 4,  // b2sum: the same with a length
    cksum = 8,   // tagged lines, several functions to choose from
    sum = 16     // the two oldest checksums
};

struct Tool {
    std::string_view name;
    ToolKind kind;
    std::string_view function; // by default
};

// All of them, fyrnsum first.
std::span<const Tool> Tools();

// The tool of this name, which may be a path and may end in ".exe"; fyrnsum for any other name.
const Tool& ToolCalled(std::string_view program);

} // namespace sum
