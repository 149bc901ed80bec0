// SPDX-License-Identifier: MIT
#include "platform/Text.h"

namespace platform {

std::string EncodeName(std::wstring_view text) {
    return std::string(text.begin(), text.end());
}

} // namespace platform
