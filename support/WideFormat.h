// SPDX-License-Identifier: MIT
// Formatted wide text with one meaning on every system: %s and %ls take wide text, %S and %hs narrow text
// (bytes widened one to one), %c a wide character, %d %i %u %x %X an integer (its low 32 bits), %I64d %I64u
// %I64x %lld %llu %llx a 64-bit integer, %p an address as 16 upper-case hex digits, %% a percent sign; with
// width, "-" and "0". A null text prints as "(null)".
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <type_traits>

// One argument of a format. Any conversion may be applied to any argument without undefined behaviour: a
// text conversion of an argument that is no text of its width prints "(null)", a number conversion of a
// pointer prints the address's bits.
class FormatArgument {
  public:
    template <class Integer>
    requires(std::is_integral_v<Integer> || std::is_enum_v<Integer>) FormatArgument(Integer value)
        : bits_(static_cast<std::uint64_t>(value)) {}
    FormatArgument(const wchar_t* text) : FormatArgument(static_cast<const void*>(text)) { wide_ = text; }
    FormatArgument(const char* text) : FormatArgument(static_cast<const void*>(text)) { narrow_ = text; }
    FormatArgument(const void* address) : bits_(reinterpret_cast<std::uintptr_t>(address)) {}

    std::uint64_t Bits() const { return bits_; }
    const wchar_t* Wide() const { return wide_; }
    const char* Narrow() const { return narrow_; }

  private:
    std::uint64_t bits_;
    const wchar_t* wide_ = nullptr;
    const char* narrow_ = nullptr;
};

// Formats into `buffer`, cutting at capacity - 1 characters, always terminated. Returns the length of the
// whole text, also of the part that was cut. `buffer` may be null when `capacity` is 0. Allocates nothing.
std::size_t FormatWide(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                       const FormatArgument* arguments, std::size_t count);

std::wstring FormatTextList(const wchar_t* format, std::initializer_list<FormatArgument> arguments);

// The formatted text, however long. Throws std::bad_alloc.
template <class... Arguments>
std::wstring FormatText(const wchar_t* format, const Arguments&... arguments) {
    return FormatTextList(format, {FormatArgument(arguments)...});
}
