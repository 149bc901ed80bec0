// SPDX-License-Identifier: MIT
#include "app/Header.h"

#include "app/Console.h"
#include "app/HashTable.h"

void PrintHeader(const RunContext& context) {
    ConsolePrintf(L"Hashes: ");
    for (std::size_t row = 0; row < hashRowCount; ++row)
        if (IsSelected(context, row))
            ConsolePrintf(L"%s ", hashTable[row].name);
    ConsolePrintf(L"\n\n");
}
