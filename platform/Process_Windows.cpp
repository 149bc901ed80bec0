// SPDX-License-Identifier: MIT
#include "platform/Process.h"

#include <windows.h>

namespace platform {

std::size_t ExecutablePath(wchar_t* buffer, std::size_t capacity) {
    const DWORD length = GetModuleFileNameW(nullptr, buffer, static_cast<DWORD>(capacity));
    return length < capacity ? length : 0; // a path that was cut has the buffer's length
}

bool ComputerName(wchar_t* buffer, std::size_t capacity) {
    auto size = static_cast<DWORD>(capacity);
    return GetComputerNameW(buffer, &size) != 0;
}

} // namespace platform
