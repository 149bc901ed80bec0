// SPDX-License-Identifier: MIT
//
// The name is made of whatever digest was computed last: with several functions that of the last selected
// row, and after a failure that of an earlier file, or nothing before the first success. It has no directory
// part on purpose: a file met in a walk stays in the walked directory, which is the current one, and a file
// named on the command line is collected in the directory in which the program was started.
//
// A name that a link holds is no reason to delete a file: the link may lead to the file itself, or
// nowhere.
#include "app/RenameByHash.h"

#include "platform/Directory.h"
#include "platform/File.h"
#include "support/StringHelper.h"

namespace {

using platform::MoveResult;

constexpr int numberedNames = 100; // "_00" to "_99"

bool IsHeldByAnother(MoveResult result) {
    return result == MoveResult::nameTaken || result == MoveResult::nameBlocked;
}

// Where all names are taken, the file keeps its own. So it does at the first name that fails for
// another reason: a disk that is full for one number is full for the next.
void MoveToNumberedName(const RunContext& context, const wchar_t* path, const wchar_t* extension) {
    wchar_t name[platform::maxPath];
    for (int number = 0; number < numberedNames; ++number) {
        FormatToBuffer(name, platform::maxPath, L"%S_%02i%s", context.hashText, number, extension);
        if (!IsHeldByAnother(platform::MoveWithoutReplacing(path, name)))
            return;
    }
}

} // namespace

void RenameByHash(const RunContext& context, const wchar_t* path, const wchar_t* extension) {
    wchar_t name[platform::maxPath];
    FormatToBuffer(name, platform::maxPath, L"%S%s", context.hashText, extension);
    const MoveResult result = platform::MoveWithoutReplacing(path, name);
    if (!context.deleteOnCollision && IsHeldByAnother(result))
        MoveToNumberedName(context, path, extension);
    if (context.deleteOnCollision && result == MoveResult::nameTaken)
        platform::RemoveInFavourOf(path, name);
    if (context.deleteOnCollision && result == MoveResult::failed)
        platform::RemoveFile(path); // whatever the reason was
}
