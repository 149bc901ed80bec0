// SPDX-License-Identifier: MIT
// One character at a time: the runtime's own wide output drops the rest of a text at the first character that
// the locale cannot express.
#include "platform/Text.h"

#include <climits>
#include <cstdlib>

namespace platform {

static_assert(MB_LEN_MAX <= maxEncodedCharacter);

std::size_t DecodeCharacter(std::string_view bytes, wchar_t& character) {
    const int length = std::mbtowc(&character, bytes.data(), bytes.size());
    if (length > 0)
        return static_cast<std::size_t>(length);
    character = static_cast<unsigned char>(bytes[0]);
    return 1;
}

std::size_t EncodeCharacter(wchar_t character, char* bytes) {
    const int length = std::wctomb(bytes, character);
    if (length > 0)
        return static_cast<std::size_t>(length);
    bytes[0] = '?';
    return 1;
}

} // namespace platform
