// SPDX-License-Identifier: MIT
#include "platform/Process.h"

#include "platform/Text.h"

#include <cerrno>
#include <climits>
#include <cwchar>
#include <string_view>
#include <unistd.h>

namespace platform {

std::size_t ExecutablePath(wchar_t* buffer, std::size_t capacity) {
    char path[PATH_MAX];
    const ssize_t result = readlink("/proc/self/exe", path, sizeof path);
    if (result <= 0)
        return errno == ENAMETOOLONG ? capacity : 0;
    const auto length = static_cast<std::size_t>(result);
    const bool fits = length < sizeof path && DecodeInto(std::string_view(path, length), buffer, capacity);
    return fits ? std::wcslen(buffer) : capacity;
}

bool ComputerName(wchar_t* buffer, std::size_t capacity) {
    char name[HOST_NAME_MAX + 1];
    return gethostname(name, sizeof name) == 0 && DecodeInto(name, buffer, capacity);
}

} // namespace platform
