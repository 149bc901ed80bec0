// SPDX-License-Identifier: MIT
// Patterns of names.
#pragma once

#include <string_view>

namespace sum {

// Whether the whole text matches: "*" any characters, "?" one, "[a-z]" and "[!a-z]" one of or none
// of a set, "\x" x itself. All of them may stand for slashes and dots. Never takes more than text
// times pattern steps.
bool MatchesGlob(std::string_view glob, std::string_view text);

} // namespace sum
