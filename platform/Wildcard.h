// SPDX-License-Identifier: MIT
// Wildcard patterns for names, with the meaning that "*" and "?" have in the directory search of Windows.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace platform {

// Whether a text holds a wildcard; without one it is a plain name, which is looked up and not matched.
bool HoldsWildcard(std::wstring_view text);

// A pattern, translated once for any number of names. Case counts.
class WildcardPattern {
  public:
    // The longest pattern; a longer one matches nothing.
    static constexpr std::size_t maxLength = 259;

    explicit WildcardPattern(std::wstring_view pattern);

    // Whether the pattern matches the whole name. Time grows with the product of both lengths at worst.
    bool Matches(std::wstring_view name) const;

  private:
    enum class Kind : std::uint8_t {
        Literal,   // the character itself
        Any,       // any characters, also none
        AnyButDot, // the same, but not the last dot of the name
        OneAtMost, // one character that is no dot; nothing at a dot or at the end of the name
        DotOrEnd,  // a dot; nothing at the end of the name
    };
    struct Token {
        Kind kind;
        wchar_t character;
    };

    // A place in a name: a character, or the end.
    struct Place {
        wchar_t character;
        bool isDot;
        bool isLastDot;
        bool isEnd;
    };
    // The tokens that may come next, and one bit more for the end of the pattern.
    using TokenSet = std::bitset<maxLength + 1>;

    void Append(Kind kind, wchar_t character = L'\0') { tokens_[count_++] = {kind, character}; }
    void Translate(std::wstring_view pattern, bool dotCut);
    static bool IsStar(const Token& token) {
        return token.kind == Kind::Any || token.kind == Kind::AnyButDot;
    }
    static bool MaySkip(const Token& token, const Place& here);
    static bool MayTake(const Token& token, const Place& here);
    TokenSet Advance(TokenSet& tokens, const Place& here) const;

    Token tokens_[maxLength];
    std::size_t count_ = 0;
    bool tooLong_;
};

} // namespace platform
