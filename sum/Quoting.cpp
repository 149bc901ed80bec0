// SPDX-License-Identifier: MIT
// Names as a POSIX shell reads them, written as GNU's tools write them.
#include "sum/Messages.h"
#include "sum/Utf8.h"

#include <cstdint>

namespace sum {

namespace {

constexpr std::string_view neverPlain = " !\"$&'()*;<=>?[\\^`|\t\n\r:";
constexpr std::string_view plainUnlessFirst = "#~";

bool IsPlain(std::string_view name) {
    if (name.empty() || name == "{" || name == "}" ||
        plainUnlessFirst.find(name[0]) != std::string_view::npos)
        return false;
    return name.find_first_of(neverPlain) == std::string_view::npos && IsShowable(name);
}

void AppendOctal(std::string& text, unsigned char byte) {
    text += '\\';
    for (const int shift : {6, 3, 0})
        text += static_cast<char>('0' + (byte >> shift & 7));
}

// One byte within $'...' or a C string.
void AppendEscape(std::string& text, unsigned char byte) {
    constexpr std::string_view codes = "\a\b\t\n\v\f\r", letters = "abtnvfr";
    const std::size_t place = codes.find(static_cast<char>(byte));
    if (place != std::string_view::npos)
        text.append(1, '\\').append(1, letters[place]);
    else
        AppendOctal(text, byte);
}

void AppendBytes(std::string& text, std::string_view bytes, bool escaping) {
    if (!escaping) {
        text += bytes;
        return;
    }
    for (const char byte : bytes)
        AppendEscape(text, static_cast<unsigned char>(byte));
}

// Single quotes, with $'...' for what cannot be shown and \' for the quote itself.
std::string InSingleQuotes(std::string_view name) {
    std::string text = "'";
    bool escaping = false;
    while (!name.empty()) {
        const Character character = FirstCharacter(name);
        if (name.front() == '\'') {
            text += "'\\''";
            escaping = false;
        } else {
            if (character.showable == escaping)
                text += escaping ? "''" : "'$'";
            escaping = !character.showable;
            AppendBytes(text, name.substr(0, character.length), escaping);
        }
        name.remove_prefix(character.length);
    }
    return text += "'";
}

// A name with single quotes in it is easier to read in double quotes, where no other character asks
// for quotes.
bool FitsDoubleQuotes(std::string_view name) {
    return name.find('\'') != std::string_view::npos &&
           name.find_first_of("!\"#$&()*;<=>?[\\^`{|}~\t\n\r") == std::string_view::npos && IsShowable(name);
}

} // namespace

std::string QuotedAlways(std::string_view name) {
    if (FitsDoubleQuotes(name))
        return '"' + std::string(name) + '"';
    return InSingleQuotes(name);
}

std::string Quoted(std::string_view name) {
    return IsPlain(name) ? std::string(name) : QuotedAlways(name);
}

std::string QuotedPlain(std::string_view text) {
    std::string quoted = "'";
    while (!text.empty()) {
        const Character character = FirstCharacter(text);
        for (const char byte : text.substr(0, character.length)) {
            if (!character.showable)
                AppendEscape(quoted, static_cast<unsigned char>(byte));
            else if (byte == '\'' || byte == '\\')
                quoted.append(1, '\\').append(1, byte);
            else
                quoted += byte;
        }
        text.remove_prefix(character.length);
    }
    return quoted += "'";
}

} // namespace sum
