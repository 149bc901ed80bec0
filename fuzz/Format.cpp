// SPDX-License-Identifier: MIT
// The formatter: numbers are printed as the C library prints them, and any format at all stays within its buffer.
// Input: kind, 8 bytes of a value, flags and width; or a format of any text.
#include "fuzz/FuzzInput.h"
#include "platform/Text.h"
#include "support/WideFormat.h"

#include <algorithm>
#include <cinttypes>
#include <cwchar>
#include <vector>

namespace {

struct Number {
    const wchar_t* ours;
    const char* theirs;
    bool is64Bits;
};

constexpr Number numbers[] = {{L"d", PRId32, false},   {L"i", PRId32, false},   {L"u", PRIu32, false},
                              {L"x", PRIx32, false},   {L"X", PRIX32, false},   {L"I64d", PRId64, true},
                              {L"I64u", PRIu64, true}, {L"I64x", PRIx64, true}, {L"lld", PRId64, true},
                              {L"llu", PRIu64, true},  {L"llX", PRIX64, true}};

void CheckNumber(fuzz::Input& input) {
    const Number& number = numbers[input.TakeBelow(std::size(numbers))];
    const auto value = input.Take<std::uint64_t>();
    std::string flags;
    for (std::size_t count = input.TakeBelow(4); count > 0; --count)
        flags += "-0"[input.TakeBelow(2)];
    if (const std::size_t width = input.TakeBelow(100); width > 0)
        flags += std::to_string(width);
    const std::string theirs = "%" + flags + number.theirs;
    const std::wstring ours = L"%" + platform::DecodeName(flags) + number.ours;

    char expected[200];
    wchar_t got[200];
    if (number.is64Bits)
        std::snprintf(expected, sizeof expected, theirs.c_str(), value);
    else
        std::snprintf(expected, sizeof expected, theirs.c_str(), static_cast<std::uint32_t>(value));
    const FormatArgument argument(value);
    const std::size_t length = FormatWide(got, std::size(got), ours.c_str(), &argument, 1);
    fuzz::RequireEqual(platform::EncodeName({got, length}), expected, theirs);
}

// The same text, cut, whatever the buffer holds; sanitizers watch its borders.
void CheckBounds(fuzz::Input& input) {
    const auto pointer = input.Take<std::uint32_t>();
    const std::size_t capacity = input.TakeBelow(300);
    const std::size_t count = input.TakeBelow(5);
    const auto bytes = input.TakeRest();
    const std::wstring format =
        platform::DecodeName({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    const FormatArgument arguments[] = {L"wide", "narrow", pointer, static_cast<const wchar_t*>(nullptr)};
    std::vector<wchar_t> large(2000), small(capacity, L'#');
    const std::size_t length = FormatWide(large.data(), large.size(), format.c_str(), arguments, count);
    fuzz::Require(FormatWide(small.data(), capacity, format.c_str(), arguments, count) == length,
                  "the length does not depend on the buffer");
    if (capacity == 0)
        return;
    const std::size_t kept = std::min(length, capacity - 1);
    fuzz::Require(small[kept] == L'\0', "a cut text is terminated");
    fuzz::Require(std::wmemcmp(small.data(), large.data(), std::min(kept, large.size() - 1)) == 0,
                  "a cut text is the start of the whole");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    if (input.TakeBelow(2) == 0)
        CheckNumber(input);
    else
        CheckBounds(input);
    return 0;
}
