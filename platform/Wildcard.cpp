// SPDX-License-Identifier: MIT
// The pattern is translated into tokens, not into the reserved characters that Windows uses for them, since those may
// stand in a name elsewhere. All ways to match are followed at once, so that no pattern takes exponential time.
#include "platform/Wildcard.h"

namespace platform {

namespace {

bool IsWildcard(wchar_t character) {
    return character == L'*' || character == L'?';
}

} // namespace

bool HasWildcard(std::wstring_view text) {
    return text.find_first_of(L"*?") != std::wstring_view::npos;
}

// Dots at the end are dropped; a "*" that stood before them asks for a name without extension.
Wildcard::Wildcard(std::wstring_view pattern) {
    const std::wstring_view kept = pattern.substr(0, pattern.find_last_not_of(L'.') + 1);
    if (kept == L"*.*") {
        tokens_.push_back({Kind::AnyText, L'*'});
        return;
    }
    for (std::size_t i = 0; i < kept.size(); ++i)
        tokens_.push_back(Translate(pattern, i));
}

// A pattern of which dots were dropped is translated with the first of them still there, so that "*" sees it.
Wildcard::Token Wildcard::Translate(std::wstring_view pattern, std::size_t index) {
    const wchar_t character = pattern[index];
    const wchar_t next = index + 1 < pattern.size() ? pattern[index + 1] : L'\0';
    if (character == L'?')
        return {Kind::AtMostOne, character};
    if (character == L'*')
        return {next == L'.' ? Kind::TextBeforeDot : Kind::AnyText, character};
    if (character == L'.' && IsWildcard(next))
        return {Kind::DotOrEnd, character};
    return {Kind::Literal, character};
}

bool Wildcard::MatchesEverything() const {
    return tokens_.size() == 1 && tokens_[0].kind == Kind::AnyText;
}

bool Wildcard::Matches(std::wstring_view name) const {
    const std::size_t lastDot = name.rfind(L'.');
    States states(tokens_.size() + 1);
    states[0] = true;
    for (std::size_t i = 0; i < name.size(); ++i) {
        AddEmptyMatches(states, name[i] == L'.', false);
        states = Advance(states, name[i], i == lastDot);
    }
    AddEmptyMatches(states, false, true);
    return states.back();
}

// Adds what is reached by tokens that match nothing at this place of the name.
void Wildcard::AddEmptyMatches(States& states, bool atDot, bool atEnd) const {
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
        const Kind kind = tokens_[i].kind;
        const bool mayBeEmpty = kind == Kind::AnyText || kind == Kind::TextBeforeDot ||
                                (kind == Kind::AtMostOne && (atDot || atEnd)) ||
                                (kind == Kind::DotOrEnd && atEnd);
        if (states[i] && mayBeEmpty)
            states[i + 1] = true;
    }
}

Wildcard::States Wildcard::Advance(const States& states, wchar_t character, bool isLastDot) const {
    States next(states.size());
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
        const Token token = tokens_[i];
        if (!states[i])
            continue;
        if (token.kind == Kind::AnyText || (token.kind == Kind::TextBeforeDot && !isLastDot))
            next[i] = true;
        else if ((token.kind == Kind::Literal && token.character == character) ||
                 (token.kind == Kind::AtMostOne && character != L'.') ||
                 (token.kind == Kind::DotOrEnd && character == L'.'))
            next[i + 1] = true;
    }
    return next;
}

} // namespace platform
