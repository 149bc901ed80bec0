// SPDX-License-Identifier: MIT
// What a search finds on every system. Patterns whose meaning is known to differ elsewhere are left out.
#include "platform/Directory.h"

#include "tests/helpers/ScratchFiles.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

using platform::FoundEntry;

class Search : public testing::Test {
  protected:
    // The names that a pattern finds in the scratch directory, directories with a "/" at the end.
    std::vector<std::wstring> Find(const std::string& pattern) const {
        std::vector<std::wstring> names;
        FoundEntry entry;
        const platform::SearchHandle search = platform::SearchFirst(scratch.Path(pattern).c_str(), entry);
        if (search == platform::noSearch)
            return names;
        do
            names.push_back(entry.name + std::wstring(entry.isDirectory ? L"/" : L""));
        while (platform::SearchNext(search, entry));
        platform::SearchClose(search);
        return names;
    }

    void MakeDirectory(const char* name) const {
        std::filesystem::create_directory(scratch.Directory() / name);
    }

    using Names = std::vector<std::wstring>;
    helpers::ScratchFiles scratch;
};

TEST_F(Search, APlainNameFindsItself) {
    scratch.Write("a.txt", "");
    MakeDirectory("sub");
    EXPECT_EQ(Find("a.txt"), Names({L"a.txt"}));
    EXPECT_EQ(Find("sub"), Names({L"sub/"}));
}

TEST_F(Search, WhatIsNotThereIsNotFound) {
    scratch.Write("a.txt", "");
    for (const char* const name :
         {"b.txt", "sub/a.txt", "a.txt/x", "nodir/*", "a.txt/*", "b*", "a*/x", "a*/*"})
        EXPECT_EQ(Find(name), Names()) << name;
}

TEST_F(Search, TheEmptyTextFindsNothing) {
    FoundEntry entry;
    EXPECT_EQ(platform::SearchFirst(L"", entry), platform::noSearch);
}

TEST_F(Search, StarsFindEveryNameWithTheDirectoryItselfAndItsParentFirst) {
    for (const char* const name : {"b.txt", "a", ".rc", "C.txt"})
        scratch.Write(name, "");
    MakeDirectory("bb");
    const Names all = {L"./", L"../", L".rc", L"a", L"b.txt", L"bb/", L"C.txt"};
    EXPECT_EQ(Find("*"), all);
    EXPECT_EQ(Find("*.*"), all);
}

TEST_F(Search, AnEmptyDirectoryHoldsItselfAndItsParent) {
    EXPECT_EQ(Find("*.*"), Names({L"./", L"../"}));
}

TEST_F(Search, APatternFindsFilesAndDirectories) {
    for (const char* const name : {"a.jpg", "b.jpg", "c.png", "jpg"})
        scratch.Write(name, "");
    MakeDirectory("d.jpg");
    EXPECT_EQ(Find("*.jpg"), Names({L"a.jpg", L"b.jpg", L"d.jpg/"}));
    EXPECT_EQ(Find("?.png"), Names({L"c.png"}));
}

TEST_F(Search, APatternWithADirectoryFindsBareNames) {
    MakeDirectory("sub");
    scratch.Write("sub/x.1", "");
    EXPECT_EQ(Find("sub/x*"), Names({L"x.1"}));
}

TEST_F(Search, FilesRenamedDuringTheSearchAreNotMetAgain) {
    for (int i = 0; i < 500; ++i)
        scratch.Write(std::to_string(1000 + i), "");
    FoundEntry entry;
    const platform::SearchHandle search = platform::SearchFirst(scratch.Path("*").c_str(), entry);
    int met = 0;
    do {
        if (entry.isDirectory)
            continue;
        ++met;
        const auto path = scratch.Directory() / entry.name;
        std::filesystem::rename(path,
                                scratch.Directory() / std::string("zzz").append(path.filename().string()));
    } while (platform::SearchNext(search, entry));
    platform::SearchClose(search);
    EXPECT_EQ(met, 500);
}

TEST_F(Search, SearchesInsideEachOtherDoNotDisturbEachOther) {
    scratch.Write("a.x", "");
    scratch.Write("b.x", "");
    FoundEntry outer;
    const platform::SearchHandle search = platform::SearchFirst(scratch.Path("*.x").c_str(), outer);
    EXPECT_EQ(Find("*"), Names({L"./", L"../", L"a.x", L"b.x"}));
    EXPECT_STREQ(outer.name, L"a.x");
    ASSERT_TRUE(platform::SearchNext(search, outer));
    EXPECT_STREQ(outer.name, L"b.x");
    EXPECT_FALSE(platform::SearchNext(search, outer));
    platform::SearchClose(search);
}

} // namespace
