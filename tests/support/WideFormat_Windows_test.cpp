// SPDX-License-Identifier: MIT
// The formatter against the bounded one of the Windows runtime, whose meaning of the conversions it has.
#include "support/StringHelper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string>

namespace {

template <class... Arguments>
void ExpectAsTheRuntime(const std::wstring& format, Arguments... arguments) {
    for (const std::size_t capacity : {1u, 2u, 7u, 17u, 128u}) {
        wchar_t ours[128];
        wchar_t theirs[128];
        const int length = FormatToBuffer(ours, capacity, format.c_str(), arguments...);
        const int theirLength = _snwprintf_s(theirs, capacity, _TRUNCATE, format.c_str(), arguments...);
        EXPECT_EQ(length, std::max(theirLength, 0)) << capacity;
        EXPECT_EQ(std::wstring(ours), std::wstring(theirs)) << capacity;
    }
}

const wchar_t* const fields[] = {L"", L"1", L"5", L"05", L"-5", L"-05", L"24", L"024", L"-24"};

TEST(WideFormatOfTheRuntime, IsOursForIntegers) {
    for (const std::wstring field : fields)
        for (const wchar_t type : L"diuxX")
            for (const int value : {0, 1, -1, 42, -42, 2147483647, -2147483647 - 1}) {
                if (type != L'\0')
                    ExpectAsTheRuntime(L"[%" + field + type + L"]", value);
            }
}

TEST(WideFormatOfTheRuntime, IsOursFor64BitIntegers) {
    constexpr auto lowest = INT64_MIN;
    for (const std::wstring field : fields)
        for (const wchar_t type : L"diuxX")
            for (const std::int64_t value : {std::int64_t{0}, std::int64_t{-1}, lowest, INT64_MAX}) {
                if (type != L'\0')
                    ExpectAsTheRuntime(L"[%" + field + L"I64" + type + L"]", value);
            }
}

TEST(WideFormatOfTheRuntime, IsOursForTexts) {
    const wchar_t* const noWide = nullptr;
    const char* const noNarrow = nullptr;
    for (const std::wstring field : {L"", L"1", L"5", L"-5", L"24", L"-24"}) {
        for (const wchar_t* text : {L"", L"abc", L"na\xefve \x20ac", noWide})
            for (const wchar_t* type : {L"s", L"ls"})
                ExpectAsTheRuntime(L"[%" + field + type + L"]", text);
        for (const char* text : {"", "abc", "na\xefve", noNarrow})
            for (const wchar_t* type : {L"S", L"hs"})
                ExpectAsTheRuntime(L"[%" + field + type + L"]", text);
        ExpectAsTheRuntime(L"[%" + field + L"c]", L'\x20ac');
    }
}

TEST(WideFormatOfTheRuntime, IsOursForAddressesAndPercentSigns) {
    for (const std::uintptr_t bits : {std::uintptr_t{0}, std::uintptr_t{0x1234abcd}, ~std::uintptr_t{0}}) {
        const void* const address = reinterpret_cast<const void*>(bits);
        ExpectAsTheRuntime(L"0x%p|%20p|%-20p|", address, address, address);
        ExpectAsTheRuntime(L"%i", address);
    }
    ExpectAsTheRuntime(L"100%% of %i%%", 42);
}

} // namespace
