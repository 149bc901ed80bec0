// SPDX-License-Identifier: MIT
#include "platform/PathSplit.h"

#include <algorithm>
#include <string_view>

namespace platform {

namespace {

bool Fits(std::wstring_view part) {
    return part.size() < maxPath;
}

void Store(wchar_t* buffer, std::wstring_view part) {
    *std::copy(part.begin(), part.end(), buffer) = L'\0';
}

// The directory reaches up to and with the last separator, the extension from the last dot behind it.
void Split(std::wstring_view path, std::size_t driveLength, const wchar_t* separators, PathParts& parts) {
    const std::wstring_view drive = path.substr(0, driveLength);
    path.remove_prefix(driveLength);
    const std::wstring_view directory = path.substr(0, path.find_last_of(separators) + 1);
    const std::wstring_view name = path.substr(directory.size());
    const std::wstring_view base = name.substr(0, name.rfind(L'.'));
    const std::wstring_view extension = name.substr(base.size());

    const bool fit = Fits(drive) && Fits(directory) && Fits(base) && Fits(extension);
    Store(parts.drive, fit ? drive : std::wstring_view());
    Store(parts.directory, fit ? directory : std::wstring_view());
    Store(parts.base, fit ? base : std::wstring_view());
    Store(parts.extension, fit ? extension : std::wstring_view());
}

} // namespace

void SplitPathByPosixRules(const wchar_t* path, PathParts& parts) {
    Split(path, 0, L"/", parts);
}

void SplitPathByWindowsRules(const wchar_t* path, PathParts& parts) {
    const bool hasDrive = path[0] != L'\0' && path[1] == L':';
    Split(path, hasDrive ? 2 : 0, L"\\/", parts);
}

} // namespace platform
