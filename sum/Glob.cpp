// SPDX-License-Identifier: MIT
#include "sum/Glob.h"

#include "sum/Utf8.h"

#include <cstdint>
#include <optional>

namespace sum {

namespace {

// A character, or a byte that is part of none, which gets a number that no character has.
std::uint32_t TakeCode(std::string_view& text) {
    const Character character = FirstCharacter(text);
    const std::uint32_t code =
        character.valid ? character.code : 0x80000000U | static_cast<unsigned char>(text.front());
    text.remove_prefix(character.length);
    return code;
}

std::uint32_t TakeSetMember(std::string_view& glob) {
    if (glob.front() == '\\' && glob.size() > 1)
        glob.remove_prefix(1);
    return TakeCode(glob);
}

// Reads "a-z]" with the set's opening taken; nothing when it is never closed. A "]" that comes
// first is a member.
std::optional<bool> TakeSet(std::string_view& glob, std::uint32_t code) {
    const bool negated = !glob.empty() && (glob.front() == '!' || glob.front() == '^');
    if (negated)
        glob.remove_prefix(1);
    bool found = false;
    for (bool first = true; !glob.empty(); first = false) {
        if (glob.front() == ']' && !first) {
            glob.remove_prefix(1);
            return found != negated;
        }
        const std::uint32_t low = TakeSetMember(glob);
        std::uint32_t high = low;
        if (glob.size() > 1 && glob[0] == '-' && glob[1] != ']') {
            glob.remove_prefix(1);
            high = TakeSetMember(glob);
        }
        found = found || (code >= low && code <= high);
    }
    return std::nullopt;
}

// Takes one element of the pattern that is no "*" and one character of the text, and tells whether
// they match.
bool TakeOne(std::string_view& glob, std::string_view& text) {
    const std::uint32_t code = TakeCode(text);
    if (glob.front() == '?') {
        glob.remove_prefix(1);
        return true;
    }
    if (glob.front() == '[') {
        std::string_view rest = glob.substr(1);
        if (const auto matches = TakeSet(rest, code)) {
            glob = rest;
            return *matches;
        }
        return TakeCode(glob) == code; // an opening without an end stands for itself
    }
    return TakeSetMember(glob) == code;
}

} // namespace

// After a mismatch only the last "*" needs to take one more character: what an earlier one takes
// more can be left to it.
bool MatchesGlob(std::string_view glob, std::string_view text) {
    std::optional<std::string_view> globAfterStar;
    std::string_view textAfterStar;
    for (;;) {
        if (!glob.empty() && glob.front() == '*') {
            glob.remove_prefix(1);
            globAfterStar = glob;
            textAfterStar = text;
        } else if (glob.empty() && text.empty()) {
            return true;
        } else if (glob.empty() || text.empty() || !TakeOne(glob, text)) {
            if (!globAfterStar || textAfterStar.empty())
                return false;
            TakeCode(textAfterStar);
            glob = *globAfterStar;
            text = textAfterStar;
        }
    }
}

} // namespace sum
