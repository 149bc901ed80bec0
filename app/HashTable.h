// SPDX-License-Identifier: MIT
// The hash functions that can be selected by name.
#pragma once

#include "app/RunContext.h"

#include <array>
#include <cstddef>

struct HashRow {
    const wchar_t* name;

    // Writes the file's digest to context.hashText; false, and the text untouched, when it cannot be had.
    bool (*hash)(RunContext& context, const wchar_t* path);

    // Whether the digest line is printed also after a failure, with whatever digest came before.
    // Deliberate: reports of old depend on these rows having a line for every file.
    bool printedAlways;

    // The engine that takes the salt when this row is selected; null when the row does not ask for it.
    CCrypto_Salt& (*saltedEngine)(RunContext& context);
};

// In the order of all output, which is also the order in which names are matched and the bit number in
// RunContext::selection.
inline constexpr std::size_t hashRowCount = 43;
extern const std::array<HashRow, hashRowCount> hashTable;

void SelectRow(RunContext& context, std::size_t row);
void SelectAllRows(RunContext& context);
bool IsSelected(const RunContext& context, std::size_t row);
unsigned char CountSelectedHashes(const RunContext& context);
