// SPDX-License-Identifier: MIT
// Names between bytes and wide text: nothing is lost on the way there and back, and every way there is the same.
#include "fuzz/FuzzInput.h"
#include "platform/Text.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace {

void CheckCharacters(const std::wstring& text) {
    for (const wchar_t character : text) {
        const auto value = static_cast<std::uint32_t>(character);
        const bool escaped = value >= 0xDC80 && value <= 0xDCFF;
        fuzz::Require(escaped || (value <= 0x10FFFF && (value < 0xD800 || value > 0xDFFF)),
                      "a character is a code point or an escaped byte");
    }
}

void CheckBuffer(std::string_view bytes, const std::wstring& text, std::size_t capacity) {
    std::vector<wchar_t> buffer(capacity, L'#');
    const bool fits = platform::DecodeInto(bytes, buffer.data(), capacity);
    fuzz::Require(fits == (text.size() < capacity), "what fits is told");
    if (capacity == 0)
        return;
    const std::size_t length = fits ? text.size() : 0;
    fuzz::Require(
        buffer[length] == L'\0' &&
            std::equal(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(length), text.begin()),
        "a buffer holds the text, or nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::wstring text = platform::DecodeName(bytes);
    fuzz::Require(platform::EncodeName(text) == bytes, "encoding reverses decoding");
    CheckCharacters(text);
    for (const std::size_t capacity :
         {std::size_t{0}, std::size_t{1}, text.size(), text.size() + 1, size + 2})
        CheckBuffer(bytes, text, capacity);
    return 0;
}
