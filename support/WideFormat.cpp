// SPDX-License-Identifier: MIT
#include "support/WideFormat.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <string_view>

namespace {

// The destination: counts every character, and keeps those that fit in front of the terminating zero.
class BoundedText {
  public:
    BoundedText(wchar_t* buffer, std::size_t capacity)
        : buffer_(buffer), capacity_(capacity), room_(capacity == 0 ? 0 : capacity - 1) {}

    void Fill(wchar_t character, std::size_t count) {
        std::fill_n(buffer_ + Kept(), std::min(count, room_ - Kept()), character);
        length_ += count;
    }

    // Narrow characters are bytes, widened one to one.
    void Put(const char* text, std::size_t count) {
        std::transform(text, text + std::min(count, room_ - Kept()), buffer_ + Kept(),
                       [](char c) { return static_cast<wchar_t>(static_cast<unsigned char>(c)); });
        length_ += count;
    }

    void Put(const wchar_t* text, std::size_t count) {
        std::copy_n(text, std::min(count, room_ - Kept()), buffer_ + Kept());
        length_ += count;
    }

    std::size_t Terminate() {
        if (capacity_ != 0)
            buffer_[Kept()] = L'\0';
        return length_;
    }

  private:
    std::size_t Kept() const { return std::min(length_, room_); }

    wchar_t* buffer_;
    std::size_t capacity_;
    std::size_t room_;
    std::size_t length_ = 0;
};

// The arguments in turn. Those that are missing are zero, which is also the null text.
class ArgumentReader {
  public:
    ArgumentReader(const FormatArgument* first, std::size_t count) : next_(first), left_(count) {}

    FormatArgument Next() {
        if (left_ == 0)
            return FormatArgument(0);
        --left_;
        return *next_++;
    }

  private:
    const FormatArgument* next_;
    std::size_t left_;
};

enum class Size { Default, Narrow, Wide, Bits64 };

// One conversion of a format, from its percent sign to behind its type.
struct Conversion {
    const wchar_t* begin;
    const wchar_t* end;
    bool left = false;
    bool zero = false;
    std::size_t width = 0;
    Size size = Size::Default;
    wchar_t type = L'\0';
};

bool TakePrefix(const wchar_t*& text, const wchar_t* prefix) {
    const std::size_t length = std::wcslen(prefix);
    if (std::wcsncmp(text, prefix, length) != 0)
        return false;
    text += length;
    return true;
}

Size TakeSize(const wchar_t*& text) {
    if (TakePrefix(text, L"I64") || TakePrefix(text, L"ll"))
        return Size::Bits64;
    if (TakePrefix(text, L"l"))
        return Size::Wide;
    return TakePrefix(text, L"h") ? Size::Narrow : Size::Default;
}

Conversion ParseConversion(const wchar_t* percent) {
    Conversion conversion{percent, percent + 1};
    const wchar_t*& next = conversion.end;
    for (; *next == L'-' || *next == L'0'; ++next)
        (*next == L'-' ? conversion.left : conversion.zero) = true;
    for (; *next >= L'0' && *next <= L'9'; ++next)
        conversion.width = conversion.width * 10 + static_cast<std::size_t>(*next - L'0');
    conversion.size = TakeSize(next);
    conversion.type = *next;
    if (*next != L'\0')
        ++next;
    return conversion;
}

template <class Character>
void PutField(const Conversion& conversion, bool negative, const Character* text, std::size_t length,
              BoundedText& out) {
    const std::size_t taken = length + (negative ? 1 : 0);
    const std::size_t padding = conversion.width > taken ? conversion.width - taken : 0;
    const bool zeros = conversion.zero && !conversion.left;
    if (!conversion.left && !zeros)
        out.Fill(L' ', padding);
    if (negative)
        out.Fill(L'-', 1);
    if (zeros)
        out.Fill(L'0', padding);
    out.Put(text, length);
    if (conversion.left)
        out.Fill(L' ', padding);
}

template <class Character>
void PutText(const Conversion& conversion, const Character* text, BoundedText& out) {
    if (text == nullptr)
        PutField(conversion, false, L"(null)", 6, out);
    else
        PutField(conversion, false, text, std::char_traits<Character>::length(text), out);
}

void PutCharacter(const Conversion& conversion, wchar_t character, BoundedText& out) {
    PutField(conversion, false, &character, 1, out);
}

void PutNumber(const Conversion& conversion, bool negative, std::uint64_t magnitude, unsigned int base,
               std::size_t minimumDigits, BoundedText& out) {
    const char* const digits = conversion.type == L'x' ? "0123456789abcdef" : "0123456789ABCDEF";
    char text[20]; // 2^64 - 1 in decimal
    char* const end = std::end(text);
    char* first = end;
    for (; magnitude != 0 || static_cast<std::size_t>(end - first) < minimumDigits; magnitude /= base)
        *--first = digits[magnitude % base];
    PutField(conversion, negative, first, static_cast<std::size_t>(end - first), out);
}

void PutUnsigned(const Conversion& conversion, std::uint64_t bits, unsigned int base, BoundedText& out) {
    const bool whole = conversion.size == Size::Bits64;
    PutNumber(conversion, false, whole ? bits : static_cast<std::uint32_t>(bits), base, 1, out);
}

void PutSigned(const Conversion& conversion, std::uint64_t bits, BoundedText& out) {
    const bool whole = conversion.size == Size::Bits64;
    const std::int64_t value = whole ? static_cast<std::int64_t>(bits) : static_cast<std::int32_t>(bits);
    const auto magnitude = static_cast<std::uint64_t>(value);
    PutNumber(conversion, value < 0, value < 0 ? 0 - magnitude : magnitude, 10, 1, out);
}

void PutConversion(const Conversion& conversion, ArgumentReader& arguments, BoundedText& out) {
    switch (conversion.type) {
    case L's':
        if (conversion.size != Size::Narrow)
            return PutText(conversion, arguments.Next().Wide(), out);
        [[fallthrough]];
    case L'S':
        return PutText(conversion, arguments.Next().Narrow(), out);
    case L'c':
        return PutCharacter(conversion, static_cast<wchar_t>(arguments.Next().Bits()), out);
    case L'd':
    case L'i':
        return PutSigned(conversion, arguments.Next().Bits(), out);
    case L'u':
        return PutUnsigned(conversion, arguments.Next().Bits(), 10, out);
    case L'x':
    case L'X':
        return PutUnsigned(conversion, arguments.Next().Bits(), 16, out);
    case L'p':
        return PutNumber(conversion, false, arguments.Next().Bits(), 16, 16, out);
    case L'%':
        return PutCharacter(conversion, L'%', out);
    default: // not a conversion: printed as it stands
        out.Put(conversion.begin, static_cast<std::size_t>(conversion.end - conversion.begin));
    }
}

} // namespace

std::size_t FormatWide(wchar_t* buffer, std::size_t capacity, const wchar_t* format,
                       const FormatArgument* arguments, std::size_t count) {
    BoundedText out(buffer, capacity);
    ArgumentReader reader(arguments, count);
    for (std::wstring_view rest = format == nullptr ? L"" : format; !rest.empty();) {
        const std::size_t plain = std::min(rest.find(L'%'), rest.size());
        out.Put(rest.data(), plain);
        rest.remove_prefix(plain);
        if (rest.empty())
            break;
        const Conversion conversion = ParseConversion(rest.data());
        PutConversion(conversion, reader, out);
        rest.remove_prefix(static_cast<std::size_t>(conversion.end - conversion.begin));
    }
    return out.Terminate();
}

std::wstring FormatTextList(const wchar_t* format, std::initializer_list<FormatArgument> arguments) {
    std::wstring text(FormatWide(nullptr, 0, format, arguments.begin(), arguments.size()), L'\0');
    FormatWide(text.data(), text.size() + 1, format, arguments.begin(), arguments.size());
    return text;
}
