// SPDX-License-Identifier: MIT
#include "sum/Escape.h"

#include "sum/Utf8.h"

#include <cstdint>

namespace sum {

namespace {

constexpr std::string_view toEscape = "\\\n\r";

} // namespace

bool NeedsEscape(std::string_view name) {
    return name.find_first_of(toEscape) != std::string_view::npos;
}

std::string Escaped(std::string_view name) {
    constexpr std::string_view letters = "\\nr";
    std::string escaped;
    for (const char c : name) {
        const std::size_t place = toEscape.find(c);
        if (place == std::string_view::npos)
            escaped += c;
        else
            escaped.append(1, '\\').append(1, letters[place]);
    }
    return escaped;
}

std::string PercentEscaped(std::string_view name) {
    std::string escaped;
    for (const char c : name) {
        if (c == '\r')
            escaped += "%0D";
        else if (c == '\n')
            escaped += "%0A";
        else if (c == '%')
            escaped += "%25";
        else
            escaped += c;
    }
    return escaped;
}

std::string JsonEscaped(std::string_view text) {
    constexpr std::string_view codes = "\"\\\b\f\n\r\t", letters = "\"\\bfnrt", digits = "0123456789abcdef";
    std::string escaped;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const std::size_t place = codes.find(c);
        if (place != std::string_view::npos)
            escaped.append(1, '\\').append(1, letters[place]);
        else if (byte < 0x20 || byte == 0x7f)
            escaped.append("\\u00").append(1, digits[byte >> 4]).append(1, digits[byte & 15]);
        else
            escaped += c;
    }
    return escaped;
}

std::string JsonName(const std::string& member, std::string_view name) {
    if (IsUtf8(name))
        return '"' + member + "\":\"" + JsonEscaped(name) + '"';
    return '"' + member + "_base64\":\"" + ToBase64(std::as_bytes(std::span(name))) + '"';
}

std::string JsonPath(std::string_view name) {
    return JsonName("path", name);
}

std::string ToBase64(std::span<const std::byte> bytes) {
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (; !bytes.empty(); bytes = bytes.subspan(bytes.size() < 3 ? bytes.size() : 3)) {
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i)
            group = group << 8 | (i < bytes.size() ? std::to_integer<std::uint32_t>(bytes[i]) : 0);
        for (std::size_t i = 0; i < 4; ++i)
            text += i <= bytes.size() ? digits[group >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

} // namespace sum
