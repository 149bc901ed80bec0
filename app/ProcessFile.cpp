// SPDX-License-Identifier: MIT
#include "app/ProcessFile.h"

#include "app/HashTable.h"
#include "app/RenameByHash.h"
#include "platform/Directory.h"

namespace {

void ProcessRow(RunContext& context, const HashRow& row, const wchar_t* path) {
    context.progress.BeginRow(row.name);
    const bool hashed = row.hash(context, path);
    context.report.ExpectReader(); // or the digest may be that of a part
    if (hashed || row.printedAlways)
        context.report.PrintDigest(context);
}

} // namespace

void ProcessFile(RunContext& context, const wchar_t* path) {
    platform::PathParts parts;
    platform::SplitPath(path, parts);
    context.report.PrintName(context, parts);
    context.progress.BeginFile(path);
    for (std::size_t row = 0; row < hashRowCount; ++row)
        if (IsSelected(context, row))
            ProcessRow(context, hashTable[row], path);
    if (context.rename && context.report.PassOn())
        RenameByHash(context, path, parts.extension);
}
