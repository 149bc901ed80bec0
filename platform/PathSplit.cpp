// SPDX-License-Identifier: MIT
#include "platform/PathSplit.h"

#include <algorithm>
#include <string_view>

namespace platform {

namespace {

bool Copy(std::wstring_view text, wchar_t (&part)[maxPath]) {
    const bool fits = text.size() < maxPath;
    if (fits)
        *std::copy(text.begin(), text.end(), part) = L'\0';
    return fits;
}

void Clear(PathParts& parts) {
    parts.drive[0] = parts.directory[0] = parts.base[0] = parts.extension[0] = L'\0';
}

// Splits what follows the drive. The extension begins at the last dot of the name, even if that is its first
// character: ".rc" has an empty base.
void Split(std::wstring_view drive, std::wstring_view rest, const wchar_t* separators, PathParts& parts) {
    const std::size_t nameStart = rest.find_last_of(separators) + 1;
    const std::wstring_view name = rest.substr(nameStart);
    const std::size_t dot = std::min(name.rfind(L'.'), name.size());
    const bool fits = Copy(drive, parts.drive) && Copy(rest.substr(0, nameStart), parts.directory) &&
                      Copy(name.substr(0, dot), parts.base) && Copy(name.substr(dot), parts.extension);
    if (!fits)
        Clear(parts);
}

} // namespace

void SplitPathByPosixRules(const wchar_t* path, PathParts& parts) {
    Split({}, path, L"/", parts);
}

void SplitPathByWindowsRules(const wchar_t* path, PathParts& parts) {
    const std::wstring_view whole(path);
    const std::size_t driveLength = whole.size() >= 2 && whole[1] == L':' ? 2 : 0;
    Split(whole.substr(0, driveLength), whole.substr(driveLength), L"/\\", parts);
}

} // namespace platform
