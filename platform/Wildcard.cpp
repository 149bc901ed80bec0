// SPDX-License-Identifier: MIT
// A pattern is translated into tokens as Windows does it before it asks the file system, and a name is matched
// by the rules of the file system's expression matcher ([MS-FSA] 2.1.4.4). Those rules make "*.*" every name,
// "*." the names without a dot, and "?" at most one character where a dot or the end follows. Blanks at the end
// of a pattern, which Windows ignores, count here, where names may end in one.
//
// Matching keeps the set of all tokens that may come next and moves it over the name one character at a time,
// so no pattern, however many stars it has, can make it slow.
#include "platform/Wildcard.h"

namespace platform {

namespace {

bool IsWildcard(wchar_t character) {
    return character == L'*' || character == L'?';
}

} // namespace

bool HoldsWildcard(std::wstring_view text) {
    return text.find_first_of(L"*?") != text.npos;
}

WildcardPattern::WildcardPattern(std::wstring_view pattern) : tooLong_(pattern.size() > maxLength) {
    if (tooLong_)
        return;
    const std::size_t kept = pattern.find_last_not_of(L'.') + 1;
    const bool dotCut = kept != pattern.size();
    pattern = pattern.substr(0, kept);
    if (pattern == L"*.*")
        Append(Kind::Any);
    else
        Translate(pattern, dotCut);
}

// `dotCut` tells that a dot was cut off the end, where it still keeps a star from taking the last dot.
void WildcardPattern::Translate(std::wstring_view pattern, bool dotCut) {
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool last = i + 1 == pattern.size();
        const wchar_t next = last ? (dotCut ? L'.' : L'\0') : pattern[i + 1];
        if (pattern[i] == L'?')
            Append(Kind::OneAtMost);
        else if (pattern[i] == L'*')
            Append(next == L'.' ? Kind::AnyButDot : Kind::Any);
        else if (pattern[i] == L'.' && IsWildcard(next))
            Append(Kind::DotOrEnd);
        else
            Append(Kind::Literal, pattern[i]);
    }
}

// Whether a token may match nothing here.
bool WildcardPattern::MaySkip(const Token& token, const Place& here) {
    switch (token.kind) {
    case Kind::Any:
    case Kind::AnyButDot:
        return true;
    case Kind::OneAtMost:
        return here.isDot || here.isEnd;
    case Kind::DotOrEnd:
        return here.isEnd;
    default:
        return false;
    }
}

// Whether a token may match the character that is here.
bool WildcardPattern::MayTake(const Token& token, const Place& here) {
    switch (token.kind) {
    case Kind::Any:
        return true;
    case Kind::AnyButDot:
        return !here.isLastDot;
    case Kind::OneAtMost:
        return !here.isDot;
    case Kind::DotOrEnd:
        return here.isDot;
    default:
        return token.character == here.character;
    }
}

// Follows every token that may come next over one character; returns those that may come after it.
WildcardPattern::TokenSet WildcardPattern::Advance(TokenSet& tokens, const Place& here) const {
    TokenSet after;
    for (std::size_t i = 0; i < count_; ++i) {
        if (!tokens[i])
            continue;
        if (MaySkip(tokens_[i], here))
            tokens.set(i + 1);
        if (!here.isEnd && MayTake(tokens_[i], here))
            after.set(IsStar(tokens_[i]) ? i : i + 1);
    }
    return after;
}

bool WildcardPattern::Matches(std::wstring_view name) const {
    if (count_ == 1 && tokens_[0].kind == Kind::Any)
        return true;
    const std::size_t lastDot = name.rfind(L'.');
    TokenSet tokens;
    tokens.set(0, !tooLong_);
    for (std::size_t i = 0; i < name.size() && tokens.any(); ++i)
        tokens = Advance(tokens, {name[i], name[i] == L'.', i == lastDot, false});
    Advance(tokens, {L'\0', false, false, true});
    return tokens[count_];
}

} // namespace platform
