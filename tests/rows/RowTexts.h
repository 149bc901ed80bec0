// SPDX-License-Identifier: MIT
// The rows of the hash table, called as the program calls them, for tests that hold for each of them.
#pragma once

#include "app/HashTable.h"
#include "tests/helpers/Bytes.h"
#include "tests/helpers/RowName.h"
#include "tests/helpers/ScratchFiles.h"

#include <string>
#include <string_view>

namespace row_tests {

class RowTexts {
  public:
    // What the row of this name prints for a file with this content; "failed" when its function failed or no row
    // bears the name.
    std::string Of(std::string_view name, std::span<const std::uint8_t> message) {
        const std::wstring path = files_.Write("message", message);
        for (const HashRow& row : hashTable)
            if (name == helpers::RowName(row))
                return row.hash(context_, path.c_str()) ? context_.hashText : "failed";
        return "failed";
    }

  private:
    RunContext context_;
    helpers::ScratchFiles files_;
};

} // namespace row_tests
