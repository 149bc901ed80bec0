// SPDX-License-Identifier: MIT
#include "app/CommandLine.h"

#include "app/HashTable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Parses a command line and keeps what came of it.
struct Parsed {
    RunContext context;
    SaltChoice salt;
    std::vector<std::wstring> arguments; // as parsing left them

    explicit Parsed(std::vector<std::wstring> texts) : arguments(std::move(texts)) {
        arguments.insert(arguments.begin(), L"fyrn");
        std::vector<wchar_t*> pointers;
        for (std::wstring& text : arguments)
            pointers.push_back(text.data());
        ParseCommandLine(static_cast<int>(pointers.size()), pointers.data(), context, salt);
    }

    // Whether argument `index`, counted from 1, is left over as a target.
    bool IsTarget(std::size_t index) const { return arguments[index][0] != L'\0'; }
};

TEST(CommandLine, StartsWithDocumentedDefaults) {
    const Parsed parsed({});
    EXPECT_EQ(parsed.context.selection[0], 0u);
    EXPECT_EQ(parsed.context.selection[1], 0u);
    EXPECT_EQ(parsed.context.verbosity, 2);
    EXPECT_FALSE(parsed.context.rename);
    EXPECT_FALSE(parsed.context.deleteOnCollision);
    EXPECT_FALSE(parsed.context.recurse);
    EXPECT_STREQ(parsed.salt.path, L"");
    EXPECT_EQ(parsed.salt.placement, EnumSaltType::None);
}

TEST(CommandLine, SkipsTheInvocationName) {
    RunContext context;
    SaltChoice salt;
    std::wstring name = L"-hash=MD5";
    wchar_t* arguments[] = {name.data(), nullptr};
    ParseCommandLine(1, arguments, context, salt);
    EXPECT_EQ(CountSelectedHashes(context), 0);
    EXPECT_EQ(name, L"-hash=MD5");
    ParseCommandLine(0, arguments, context, salt);
}

TEST(CommandLine, EmptiesEveryOptionButThePolynomials) {
    const Parsed parsed({L"-hash=MD5", L"-salt=x", L"-salttype=both", L"-rename", L"-renamedel", L"-subdirs",
                         L"-verbosity=1", L"-poly16=0xa001", L"-poly32=0xedb88320",
                         L"-poly64=0xd800000000000000"});
    for (std::size_t i = 1; i <= 7; ++i)
        EXPECT_FALSE(parsed.IsTarget(i)) << i;
    EXPECT_EQ(parsed.arguments[8], L"-poly16=0xa001");
    EXPECT_EQ(parsed.arguments[9], L"-poly32=0xedb88320");
    EXPECT_EQ(parsed.arguments[10], L"-poly64=0xd800000000000000");
}

TEST(CommandLine, EmptiesOptionsWithValuesOfNoUse) {
    const Parsed parsed(
        {L"-hash=", L"-hash=nothing", L"-salt=", L"-salttype=", L"-verbosity=", L"-verbosity=9"});
    for (std::size_t i = 1; i < parsed.arguments.size(); ++i)
        EXPECT_FALSE(parsed.IsTarget(i)) << i;
}

TEST(CommandLine, LeavesTargetsAsTheyAre) {
    const std::vector<std::wstring> targets = {L"a.txt",      L"-",           L"-hash",      L"-hash MD5",
                                               L"hash=MD5",   L"--hash=MD5",  L" -hash=MD5", L"-renames",
                                               L"-rename=",   L"-renamedel ", L"-subdir",    L"-subdirs/",
                                               L"-verbosity", L"-salttyp",    L"/hash=MD5"};
    const Parsed parsed(targets);
    for (std::size_t i = 0; i < targets.size(); ++i)
        EXPECT_EQ(parsed.arguments[i + 1], targets[i]);
    EXPECT_EQ(CountSelectedHashes(parsed.context), 0);
    EXPECT_FALSE(parsed.context.rename);
    EXPECT_FALSE(parsed.context.recurse);
}

TEST(CommandLine, MatchesOptionsWithoutCase) {
    const Parsed parsed(
        {L"-HASH=md5", L"-Salt=Path", L"-SALTTYPE=BOTH", L"-ReNameDel", L"-SUBDIRS", L"-VERBOSITY=3"});
    EXPECT_TRUE(IsSelected(parsed.context, 14));
    EXPECT_STREQ(parsed.salt.path, L"Path");
    EXPECT_EQ(parsed.salt.placement, EnumSaltType::Both);
    EXPECT_TRUE(parsed.context.rename);
    EXPECT_TRUE(parsed.context.deleteOnCollision);
    EXPECT_TRUE(parsed.context.recurse);
    EXPECT_EQ(parsed.context.verbosity, 3);
}

TEST(CommandLine, FoldsAsciiLettersOnly) {
    const Parsed parsed({L"-subd\x0130rs", L"-ha\x017fh=MD5", L"-hash=T\x0130GER1-128",
                         L"-hash=\x212a"
                         L"ECCAK-224"});
    EXPECT_FALSE(parsed.context.recurse);
    EXPECT_TRUE(parsed.IsTarget(1));
    EXPECT_TRUE(parsed.IsTarget(2));
    EXPECT_EQ(CountSelectedHashes(parsed.context), 0);
}

TEST(CommandLine, SelectsEachRowByItsName) {
    for (std::size_t row = 0; row < hashRowCount; ++row) {
        const Parsed parsed({std::wstring(L"-hash=") + hashTable[row].name});
        EXPECT_EQ(CountSelectedHashes(parsed.context), 1) << row;
        EXPECT_TRUE(IsSelected(parsed.context, row)) << row;
    }
}

TEST(CommandLine, CollectsSelections) {
    const Parsed parsed({L"-hash=MD5", L"-hash=whirlpool", L"-hash=MD5", L"-hash=BLAKE2-128"});
    EXPECT_EQ(parsed.context.selection[0], 0x00004001u);
    EXPECT_EQ(parsed.context.selection[1], 0x00000400u);
}

TEST(CommandLine, SelectsNothingByHalfAName) {
    const Parsed parsed(
        {L"-hash=", L"-hash=MD", L"-hash=MD55", L"-hash= MD5", L"-hash=MD5 ", L"-hash=AL", L"-hash=ALLE"});
    EXPECT_EQ(parsed.context.selection[0], 0u);
    EXPECT_EQ(parsed.context.selection[1], 0u);
}

TEST(CommandLine, AllSetsEveryBit) {
    const Parsed parsed({L"-hash=aLl"});
    EXPECT_EQ(parsed.context.selection[0], 0xFFFFFFFFu);
    EXPECT_EQ(parsed.context.selection[1], 0xFFFFFFFFu);
    EXPECT_EQ(CountSelectedHashes(parsed.context), hashRowCount);
}

TEST(CommandLine, TheLaterRenameOptionDecides) {
    const Parsed keeps({L"-renamedel", L"-rename"});
    EXPECT_TRUE(keeps.context.rename);
    EXPECT_FALSE(keeps.context.deleteOnCollision);
    const Parsed deletes({L"-rename", L"-renamedel"});
    EXPECT_TRUE(deletes.context.rename);
    EXPECT_TRUE(deletes.context.deleteOnCollision);
}

TEST(CommandLine, ReadsPlacements) {
    const auto placement = [](std::vector<std::wstring> texts) {
        return Parsed(std::move(texts)).salt.placement;
    };
    EXPECT_EQ(placement({L"-salttype=before"}), EnumSaltType::Before);
    EXPECT_EQ(placement({L"-salttype=Before"}), EnumSaltType::Before);
    EXPECT_EQ(placement({L"-salttype=after"}), EnumSaltType::After);
    EXPECT_EQ(placement({L"-salttype=BOTH"}), EnumSaltType::Both);
    for (const wchar_t* value : {L"none", L"", L"BEFORE ", L" after", L"bot", L"bothh", L"1"})
        EXPECT_EQ(placement({L"-salttype=both", std::wstring(L"-salttype=") + value}), EnumSaltType::None)
            << value;
    EXPECT_EQ(placement({L"-salttype=none", L"-salttype=after"}), EnumSaltType::After);
}

TEST(CommandLine, CutsTheSaltPathAt259Characters) {
    const std::wstring longest(259, L'x');
    EXPECT_EQ(Parsed({L"-salt=" + longest}).salt.path, longest);
    EXPECT_EQ(Parsed({L"-salt=" + longest + L"yz"}).salt.path, longest);
    EXPECT_EQ(Parsed({L"-salt=" + std::wstring(100'000, L'%')}).salt.path, std::wstring(259, L'%'));
}

TEST(CommandLine, TheLastSaltPathWins) {
    EXPECT_STREQ(Parsed({L"-salt=first and longer", L"-salt=second"}).salt.path, L"second");
    EXPECT_STREQ(Parsed({L"-salt=first", L"-salt="}).salt.path, L"");
    EXPECT_STREQ(Parsed({L"-salt=%s%n%d"}).salt.path, L"%s%n%d");
}

TEST(CommandLine, ReadsTheFirstCharacterOfTheVerbosity) {
    const auto verbosity = [](const wchar_t* value) {
        return Parsed({std::wstring(L"-verbosity=") + value}).context.verbosity;
    };
    EXPECT_EQ(verbosity(L"1"), 1);
    EXPECT_EQ(verbosity(L"2"), 2);
    EXPECT_EQ(verbosity(L"3"), 3);
    EXPECT_EQ(verbosity(L"3abc"), 3);
    EXPECT_EQ(verbosity(L"10"), 1);
    for (const wchar_t* value : {L"", L"0", L"4", L"-1", L" 1", L"x", L"\x0661", L"\x00b9", L"\xff11"})
        EXPECT_EQ(verbosity(value), 2) << value;
}

} // namespace
