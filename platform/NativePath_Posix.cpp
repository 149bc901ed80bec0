// SPDX-License-Identifier: MIT
#include "platform/NativePath_Posix.h"

#include "platform/Text.h"

namespace platform {

NativePath::NativePath(const wchar_t* path) {
    std::size_t length = 0;
    for (; *path != L'\0' && length + maxEncodedCharacter < sizeof bytes_; ++path)
        length += EncodeCharacter(*path, bytes_ + length);
    bytes_[*path == L'\0' ? length : 0] = '\0';
}

} // namespace platform
