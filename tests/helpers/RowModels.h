// SPDX-License-Identifier: MIT
// What each row of the hash table must print for a file without a salt, by the references in tests/reference.
#pragma once

#include "tests/helpers/Bytes.h"

#include <span>
#include <string>
#include <string_view>

namespace helpers {

struct RowModel {
    const char* name; // of the row
    Bytes (*digest)(std::span<const std::uint8_t> message);
};

// All 43, in the order of the hash table.
std::span<const RowModel> RowModels();

// Throws std::out_of_range for a name that no row bears.
const RowModel& RowModelOf(std::string_view name);

} // namespace helpers
