// SPDX-License-Identifier: MIT
// Matching of names with "*" and "?" by the rules of a Windows directory search, where "*.*" is every name, "?" is at
// most one character and "*." a name without extension. Case-sensitive.
#pragma once

#include <string_view>
#include <vector>

namespace platform {

bool HasWildcard(std::wstring_view text);

class Wildcard {
  public:
    // Throws std::bad_alloc.
    explicit Wildcard(std::wstring_view pattern);

    // Whether the pattern matches the whole name. The time is at most proportional to the product of both lengths.
    // Throws std::bad_alloc.
    bool Matches(std::wstring_view name) const;

    // Whether the pattern matches every name, so that none needs to be looked at.
    bool MatchesEverything() const;

  private:
    enum class Kind {
        Literal,       // this character
        AnyText,       // any number of characters
        TextBeforeDot, // the same, but never the last dot of the name
        AtMostOne,     // one character that is no dot; nothing at a dot or at the end
        DotOrEnd       // a dot; nothing at the end
    };
    struct Token {
        Kind kind;
        wchar_t character;
    };
    using States = std::vector<bool>; // states[i]: the tokens before i have been matched

    static Token Translate(std::wstring_view pattern, std::size_t index);
    void AddEmptyMatches(States& states, bool atDot, bool atEnd) const;
    States Advance(const States& states, wchar_t character, bool isLastDot) const;

    std::vector<Token> tokens_;
};

} // namespace platform
