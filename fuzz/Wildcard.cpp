// SPDX-License-Identifier: MIT
// The wildcard matcher against one that tries every way, with the rules written down a second time.
// Input: pattern and name, a line each, as UTF-8.
#include "platform/Wildcard.h"
#include "fuzz/FuzzInput.h"
#include "platform/Text.h"

#include <string_view>
#include <vector>

namespace {

// As the file system sees a pattern: '<', '>' and '"' with the high bit are the three special wildcards.
constexpr wchar_t star = 0x200000, starBeforeDot = 0x200001, atMostOne = 0x200002, dotOrEnd = 0x200003;

std::wstring Translated(std::wstring pattern) {
    bool cut = false;
    while (!pattern.empty() && pattern.back() == L'.') {
        pattern.pop_back();
        cut = true;
    }
    if (pattern == L"*.*")
        return {star};
    std::wstring result;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const wchar_t next = i + 1 < pattern.size() ? pattern[i + 1] : cut ? L'.' : L'\0';
        switch (pattern[i]) {
        case L'?':
            result += atMostOne;
            break;
        case L'*':
            result += next == L'.' ? starBeforeDot : star;
            break;
        case L'.':
            result += next == L'*' || next == L'?' ? dotOrEnd : L'.';
            break;
        default:
            result += pattern[i];
        }
    }
    return result;
}

class EveryWay {
  public:
    EveryWay(const std::wstring& pattern, const std::wstring& name)
        : pattern_(pattern), name_(name), lastDot_(name.rfind(L'.')),
          known_((pattern.size() + 1) * (name.size() + 1), unknown) {}

    bool Matches(std::size_t p = 0, std::size_t n = 0) {
        signed char& known = known_[p * (name_.size() + 1) + n];
        if (known == unknown)
            known = Try(p, n) ? 1 : 0;
        return known == 1;
    }

  private:
    static constexpr signed char unknown = -1;

    bool Try(std::size_t p, std::size_t n) {
        const bool end = n == name_.size();
        if (p == pattern_.size())
            return end;
        switch (pattern_[p]) {
        case star:
            return Matches(p + 1, n) || (!end && Matches(p, n + 1));
        case starBeforeDot:
            return Matches(p + 1, n) || (!end && n != lastDot_ && Matches(p, n + 1));
        case atMostOne:
            return end || name_[n] == L'.' ? Matches(p + 1, n) : Matches(p + 1, n + 1);
        case dotOrEnd:
            return end ? Matches(p + 1, n) : name_[n] == L'.' && Matches(p + 1, n + 1);
        default:
            return !end && name_[n] == pattern_[p] && Matches(p + 1, n + 1);
        }
    }

    std::wstring pattern_, name_;
    std::size_t lastDot_;
    std::vector<signed char> known_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 600)
        return 0;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::size_t line = text.find('\n');
    const std::wstring pattern = platform::DecodeName(text.substr(0, line));
    const std::wstring name = platform::DecodeName(line == text.npos ? "" : text.substr(line + 1));
    const bool expected = pattern.size() <= platform::WildcardPattern::maxLength &&
                          EveryWay(Translated(pattern), name).Matches();
    fuzz::Require(platform::WildcardPattern(pattern).Matches(name) == expected,
                  "the matcher finds what trying every way finds");
    fuzz::Require(platform::HoldsWildcard(pattern) ==
                      (pattern.find(L'*') != pattern.npos || pattern.find(L'?') != pattern.npos),
                  "a wildcard is seen");
    return 0;
}
