// SPDX-License-Identifier: MIT
#pragma once

#include "app/HashTable.h"

#include <cwchar>
#include <string>

namespace helpers {

// A row's name as narrow text; names are ASCII.
inline std::string RowName(const HashRow& row) {
    return {row.name, row.name + std::wcslen(row.name)};
}

} // namespace helpers
