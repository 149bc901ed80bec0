// SPDX-License-Identifier: MIT
#include "platform/Process.h"

#include "platform/Text.h"

#include <climits>
#include <cwchar>
#include <string_view>
#include <unistd.h>

namespace platform {

std::size_t ExecutablePath(wchar_t* buffer, std::size_t capacity) {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    const bool known = length > 0 && static_cast<std::size_t>(length) < sizeof path;
    if (!known || !DecodeInto(std::string_view(path, static_cast<std::size_t>(length)), buffer, capacity))
        return 0;
    return std::wcslen(buffer);
}

bool ComputerName(wchar_t* buffer, std::size_t capacity) {
    char name[HOST_NAME_MAX + 1];
    return gethostname(name, sizeof name) == 0 && DecodeInto(name, buffer, capacity);
}

} // namespace platform
