// SPDX-License-Identifier: MIT
#include "platform/Process.h"

#include <windows.h>

namespace platform {

std::size_t ExecutablePath(wchar_t* buffer, std::size_t capacity) {
    return GetModuleFileNameW(nullptr, buffer, static_cast<DWORD>(capacity));
}

bool ComputerName(wchar_t* buffer, std::size_t capacity) {
    auto size = static_cast<DWORD>(capacity);
    return GetComputerNameW(buffer, &size) != 0;
}

} // namespace platform
