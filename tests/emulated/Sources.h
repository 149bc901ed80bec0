// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>

namespace emulated {

// Notes the name of a source of an emulated kernel, without its path. Always true.
bool NoteSource(const char* path);

// The names noted. All are when main begins.
const std::set<std::string>& Sources();

} // namespace emulated
