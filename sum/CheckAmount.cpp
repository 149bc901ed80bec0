// SPDX-License-Identifier: MIT
#include "sum/CheckAmount.h"

#include "platform/Tree.h"
#include "sum/ListFile.h"
#include "sum/ListedName.h"

namespace sum {

namespace {

void AddFile(const Name& file, Amount& amount) {
    platform::EntryStatus status;
    if (platform::LookAt(file, true, status) != 0 || status.kind != platform::EntryKind::regular)
        return;
    ++amount.files;
    amount.bytes += status.size;
}

bool AddList(const Options& options, const Name& list, Amount& amount) {
    ListFunctions functions(FunctionsGivenBy(options), list);
    ListFile file(options, list, functions);
    if (file.Open() != 0 || !file.IsStored())
        return false;
    ListLine line;
    for (LineKind kind = file.Next(line); kind != LineKind::end; kind = file.Next(line))
        if (kind == LineKind::entry && functions.Of(line).functions)
            AddFile(FileOf(line.name, options), amount);
    return true;
}

} // namespace

Amount AmountToCheck(const Options& options) {
    Amount amount;
    try {
        for (const Name& list : options.operands)
            if (!AddList(options, list, amount))
                return {};
    } catch (const ListError&) {
        return {};
    }
    return amount;
}

} // namespace sum
