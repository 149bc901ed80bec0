// SPDX-License-Identifier: MIT
#include "platform/Wildcard.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>

namespace {

using platform::WildcardPattern;

struct Pair {
    const wchar_t* pattern;
    const wchar_t* name;
    bool matches;
};

void ExpectAll(std::initializer_list<Pair> pairs) {
    for (const Pair& pair : pairs)
        EXPECT_EQ(WildcardPattern(pair.pattern).Matches(pair.name), pair.matches)
            << testing::PrintToString(std::wstring(pair.pattern)) << " and "
            << testing::PrintToString(std::wstring(pair.name));
}

TEST(Wildcard, StarDotStarMeansEveryName) {
    ExpectAll(
        {{L"*.*", L"noext", true}, {L"*.*", L"a.b", true}, {L"*.*", L".rc", true}, {L"*.*", L".", true}});
}

TEST(Wildcard, AStarTakesAnyCharactersAndNone) {
    ExpectAll({{L"*", L"noext", true},
               {L"*", L".bashrc", true},
               {L"*", L"..", true},
               {L"a*b", L"a b", true},
               {L"a*b", L"ab", true},
               {L"a*b", L"a.x.b", true},
               {L"a*b", L"a.x.bc", false},
               {L"**", L"x", true},
               {L"*a*a*", L"banana", true},
               {L"*a*a*a*a*", L"banana", false}});
}

TEST(Wildcard, AStarBeforeADotLeavesTheLastDotAlone) {
    ExpectAll({{L"*.txt", L"a.b.txt", true},
               {L"*.txt", L".txt", true},
               {L"*.txt", L"a.txt2", false},
               {L"*.txt", L"atxt", false},
               {L"*.b.*", L"a.b", true},
               {L"a*.*", L"abc", true}});
}

TEST(Wildcard, ADotAtTheEndAsksForNamesWithoutExtension) {
    ExpectAll({{L"*.", L"noext", true},
               {L"*.", L"a.txt", false},
               {L"*.", L".rc", false},
               {L"b*.", L"b.htm", false},
               {L"b*.", L"bhtm", true},
               {L"*..", L"noext", true},
               {L"?.", L"a", true},
               {L"?.", L"a.b", false},
               {L"*.*.", L"a.txt", true}});
}

TEST(Wildcard, AQuestionMarkTakesOneCharacterThatIsNoDot) {
    ExpectAll({{L"?", L"b", true},
               {L"?", L"ab", false},
               {L"????", L"a.b", false},
               {L"a?.txt", L"ab.txt", true},
               {L"a?.txt", L"abc.txt", false},
               {L"a??", L"a.b", false},
               {L"a?c", L"a.c", false},
               {L"?", L"\x20AC", true}});
}

TEST(Wildcard, AQuestionMarkTakesNothingAtADotOrAtTheEnd) {
    ExpectAll({{L"????", L"abc", true},
               {L"a?.txt", L"a.txt", true},
               {L"*.jp?", L"x.jp", true},
               {L"*.jp?", L"x.jpeg", false},
               {L"*.??", L"q", true},
               {L"*.??", L"q.xyz", false},
               {L"ab?.*", L"ab", true}});
}

TEST(Wildcard, ADotBeforeAWildcardMayStandForTheEndOfTheName) {
    ExpectAll({{L"a.*", L"a", true},
               {L"a.*", L"a.b.c", true},
               {L"a.*", L"ab", false},
               {L".*", L".bashrc", true},
               {L".*", L"bashrc", false}});
}

TEST(Wildcard, CaseCounts) {
    ExpectAll(
        {{L"A*.TXT", L"abc.txt", false}, {L"A*.TXT", L"Abc.TXT", true}, {L"?\x00C4", L"x\x00E4", false}});
}

TEST(Wildcard, TheCharactersThatWindowsReservesAreOrdinary) {
    ExpectAll({{L"<*", L"<x", true}, {L"<*", L"x", false}, {L"\"?", L"\"x", true}, {L">?", L"xy", false}});
}

TEST(Wildcard, ABlankAtTheEndOfAPatternIsPartOfTheName) {
    ExpectAll({{L"a* ", L"ab ", true}, {L"a* ", L"ab", false}});
}

TEST(Wildcard, APatternWithoutWildcardsMatchesItselfOnly) {
    ExpectAll(
        {{L"a.txt", L"a.txt", true}, {L"a.txt", L"a.txtx", false}, {L"", L"", true}, {L"", L"a", false}});
}

TEST(Wildcard, TextsWithAWildcardAreTold) {
    EXPECT_TRUE(platform::HoldsWildcard(L"a*"));
    EXPECT_TRUE(platform::HoldsWildcard(L"?"));
    EXPECT_FALSE(platform::HoldsWildcard(L"a.b"));
    EXPECT_FALSE(platform::HoldsWildcard(L""));
}

TEST(Wildcard, ThePatternMayBeAsLongAsAPathAndNoLonger) {
    const std::wstring longest(WildcardPattern::maxLength, L'?');
    EXPECT_TRUE(WildcardPattern(longest).Matches(std::wstring(longest.size(), L'x')));
    EXPECT_FALSE(WildcardPattern(longest).Matches(std::wstring(longest.size() + 1, L'x')));
    EXPECT_FALSE(WildcardPattern(longest + L"?").Matches(L"x"));
}

// A matcher that tries every way in turn would need longer than the universe is old.
TEST(Wildcard, ManyStarsDoNotMakeMatchingSlow) {
    std::wstring pattern;
    for (int i = 0; i < 64; ++i)
        pattern += L"*x";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(WildcardPattern(pattern + L"y").Matches(std::wstring(255, L'x')));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

} // namespace
