// SPDX-License-Identifier: MIT
// Names of files as the program keeps them.
#pragma once

#include <string>

namespace sum {

// The bytes of a file's name, as the system has them; on Windows its UTF-8 form. Only the platform
// module converts them. "-" among operands and in lists is standard input; what a directory lists
// or an option's argument names is never meant so.
using Name = std::string;

} // namespace sum
