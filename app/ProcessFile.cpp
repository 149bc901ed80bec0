// SPDX-License-Identifier: MIT
#include "app/ProcessFile.h"

#include "app/Console.h"
#include "app/HashTable.h"
#include "app/Progress.h"
#include "app/RenameByHash.h"
#include "platform/Directory.h"

namespace {

void PrintNameLine(const RunContext& context, const platform::PathParts& parts) {
    if (context.verbosity == 2)
        ConsolePrintf(L"%s%s\n", parts.base, parts.extension);
    else if (context.verbosity == 3)
        ConsolePrintf(L"%s%s%s%s\n", parts.drive, parts.directory, parts.base, parts.extension);
}

void PrintDigestLine(RunContext& context, const HashRow& row, const wchar_t* path) {
    const bool hashed = row.hash(context, path);
    if (hashed || row.printedAlways)
        ConsolePrintf(L"  %S\n", context.hashText);
}

} // namespace

void ProcessFile(RunContext& context, const wchar_t* path) {
    platform::PathParts parts;
    platform::SplitPath(path, parts);
    PrintNameLine(context, parts);
    NoteFile(path);
    for (std::size_t row = 0; row < hashRowCount; ++row) {
        if (!IsSelected(context, row))
            continue;
        NoteRow(row);
        PrintDigestLine(context, hashTable[row], path);
    }
    if (context.rename)
        RenameByHash(context, path, parts.extension);
}
