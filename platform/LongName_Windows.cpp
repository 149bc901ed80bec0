// SPDX-License-Identifier: MIT
#include "platform/LongName_Windows.h"

#include <windows.h>

namespace platform {

namespace {

// Directories may have twelve characters less than files: room for a name of eight and three.
constexpr std::size_t longestPlain = MAX_PATH - 13;

bool StartsWith(const std::wstring& text, const wchar_t* start) {
    return text.rfind(start, 0) == 0;
}

std::wstring Absolute(const std::wstring& name) {
    const DWORD room = GetFullPathNameW(name.c_str(), 0, nullptr, nullptr);
    std::wstring full(room, L'\0');
    const DWORD length = GetFullPathNameW(name.c_str(), room, full.data(), nullptr);
    if (room == 0 || length >= room)
        return name;
    full.resize(length);
    return full;
}

} // namespace

std::wstring WideOf(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string Utf8Of(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    const int room = WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(room), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), room, nullptr, nullptr);
    return utf8;
}

std::wstring LongName(std::string_view utf8) {
    const std::wstring name = WideOf(utf8);
    if (name.size() <= longestPlain || StartsWith(name, LR"(\\?\)") || StartsWith(name, LR"(\\.\)"))
        return name;
    const std::wstring full = Absolute(name);
    if (StartsWith(full, LR"(\\)"))
        return LR"(\\?\UNC\)" + full.substr(2);
    return LR"(\\?\)" + full;
}

} // namespace platform
