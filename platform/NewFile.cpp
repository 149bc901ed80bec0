// SPDX-License-Identifier: MIT
#include "platform/NewFile.h"

#include <algorithm>

namespace platform {

bool IsTemporaryName(std::string_view name) {
    constexpr std::size_t varying = 6;
    return name.size() == temporaryPrefix.size() + varying && name.starts_with(temporaryPrefix) &&
           std::all_of(name.end() - varying, name.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
           });
}

} // namespace platform
