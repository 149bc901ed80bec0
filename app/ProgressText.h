// SPDX-License-Identifier: MIT
// The wording of the progress line.
#pragma once

#include <cstddef>
#include <cstdint>

// One moment of the reading of a file.
struct ProgressState {
    const wchar_t* path = L"";
    const wchar_t* function = L"";  // the hash function that the file is read for,
    unsigned int number = 1;        // which is this one
    unsigned int functionCount = 1; // of so many
    std::int64_t size = 0;          // bytes of the file; 0 when not known
    std::int64_t done = 0;          // bytes read of it for this function
    std::int64_t speed = 0;         // bytes a second; 0 when not known
};

// Writes a line that takes fewer than `columns` columns into a buffer of `capacity` characters; an empty one when
// there is no room for anything of use.
void ProgressText(const ProgressState& state, std::size_t columns, wchar_t* text, std::size_t capacity);
