// SPDX-License-Identifier: MIT
#include "platform/Directory.h"

#include "platform/Text.h"
#include "tests/helpers/OpenDescriptors_Posix.h"
#include "tests/helpers/ScratchFiles.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace {

using platform::FoundEntry;
using Names = std::vector<std::string>;

// Names as bytes; directories with "/" at the end, pipes and devices with "|".
Names FindPath(const std::string& argument) {
    Names names;
    FoundEntry entry;
    const auto search = platform::SearchFirst(platform::DecodeName(argument).c_str(), entry);
    for (bool more = search != platform::noSearch; more; more = platform::SearchNext(search, entry))
        names.push_back(platform::EncodeName(entry.name) + (entry.isDirectory ? "/"
                                                            : entry.isSpecial ? "|"
                                                                              : ""));
    platform::SearchClose(search);
    return names;
}

class SearchPosix : public testing::Test {
  protected:
    std::string Path(const std::string& name) const { return scratch.Directory().string() + "/" + name; }
    Names Find(const std::string& name) const { return FindPath(Path(name)); }
    void Touch(const std::string& name) const { std::ofstream(Path(name)) << "x"; }
    void MakeDirectory(const std::string& name) const { ASSERT_EQ(mkdir(Path(name).c_str(), 0700), 0); }
    void Link(const char* target, const std::string& name) const {
        ASSERT_EQ(symlink(target, Path(name).c_str()), 0);
    }
    void MakeSocket(const std::string& name) const {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        Path(name).copy(address.sun_path, sizeof address.sun_path - 1);
        const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
        ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        close(listener);
    }

    helpers::ScratchFiles scratch;
};

TEST_F(SearchPosix, TheSeparatorIsASlash) {
    EXPECT_EQ(platform::pathSeparator, L'/');
}

TEST_F(SearchPosix, PathsAreSplitByTheRulesOfThisSystem) {
    platform::PathParts parts;
    platform::SplitPath(L"C:d\\x/n.e", parts);
    EXPECT_STREQ(parts.drive, L"");
    EXPECT_STREQ(parts.directory, L"C:d\\x/");
    EXPECT_STREQ(parts.base, L"n");
    EXPECT_STREQ(parts.extension, L".e");
}

TEST_F(SearchPosix, CaseCounts) {
    Touch("a.TXT");
    EXPECT_EQ(Find("a.TXT"), Names({"a.TXT"}));
    EXPECT_EQ(Find("a.txt"), Names());
    EXPECT_EQ(Find("*.txt"), Names());
    EXPECT_EQ(Find("*.TXT"), Names({"a.TXT"}));
}

TEST_F(SearchPosix, DotsAndBlanksAtTheEndOfANameCount) {
    Touch("a");
    EXPECT_EQ(Find("a."), Names());
    EXPECT_EQ(Find("a "), Names());
    Touch("a.");
    Touch("a ");
    EXPECT_EQ(Find("a."), Names({"a."}));
    EXPECT_EQ(Find("a "), Names({"a "}));
}

TEST_F(SearchPosix, ANameThatHoldsWildcardsIsFoundAloneWhereItExists) {
    Touch("a1");
    Touch("a2");
    EXPECT_EQ(Find("a*"), Names({"a1", "a2"}));
    Touch("a*");
    Touch("a?");
    EXPECT_EQ(Find("a*"), Names({"a*"}));
    EXPECT_EQ(Find("a?"), Names({"a?"}));
}

TEST_F(SearchPosix, ADirectoryThatHoldsWildcardsIsTakenAsItIs) {
    MakeDirectory("d*");
    Touch("d*/x");
    MakeDirectory("dd");
    Touch("dd/y");
    EXPECT_EQ(Find("d*/?"), Names({"x"}));
    EXPECT_EQ(Find("d*/y"), Names());
}

// A walk searches for "*.*": a file that bears this name must not hide the others from it.
TEST_F(SearchPosix, AFileNamedLikeTheWalksPatternHidesNothing) {
    Touch("*.*");
    Touch("a");
    ASSERT_EQ(chdir(scratch.Directory().c_str()), 0);
    EXPECT_EQ(FindPath("*.*"), Names({"./", "../", "*.*", "a"}));
    EXPECT_EQ(FindPath("./*.*"), Names({"*.*"}));
    ASSERT_EQ(chdir("/"), 0);
}

TEST_F(SearchPosix, NamesAreSortedWithoutCaseAndThenByBytes) {
    for (const char* const name : {"b", "B", "a", "C", "_", "Zz", "zZ", "\xC3\xA4", "\xFF", "a.b", "aa"})
        Touch(name);
    EXPECT_EQ(Find("*"),
              Names({"./", "../", "a", "a.b", "aa", "B", "b", "C", "Zz", "zZ", "_", "\xC3\xA4", "\xFF"}));
}

TEST_F(SearchPosix, NamesThatAreNoUtf8AreFound) {
    Touch("x\xFFy");
    EXPECT_EQ(Find("x\xFFy"), Names({"x\xFFy"}));
    EXPECT_EQ(Find("x?y"), Names({"x\xFFy"}));
}

TEST_F(SearchPosix, TheDirectoryItselfAndItsParentAreNotFoundByName) {
    MakeDirectory("d");
    ASSERT_EQ(chdir(scratch.Directory().c_str()), 0);
    for (const char* const name : {".", "..", "./", "../", "d/.", "d/..", "d/../"})
        EXPECT_EQ(FindPath(name), Names()) << name;
    ASSERT_EQ(chdir("/"), 0);
}

TEST_F(SearchPosix, SeparatorsAtTheEndAreDroppedWhereADirectoryRemains) {
    MakeDirectory("d");
    Touch("f");
    Link("d", "ld");
    Link("f", "lf");
    EXPECT_EQ(Find("d/"), Names({"d/"}));
    EXPECT_EQ(Find("d///"), Names({"d/"}));
    EXPECT_EQ(Find("ld/"), Names({"ld/"}));
    EXPECT_EQ(Find("?/"), Names({"d/"}));
    EXPECT_EQ(Find("f/"), Names());
    EXPECT_EQ(Find("lf/"), Names());
    EXPECT_EQ(FindPath("/"), Names());
    EXPECT_EQ(FindPath("//"), Names());
}

TEST_F(SearchPosix, LinksAreWhatTheyLeadTo) {
    MakeDirectory("d");
    Touch("f");
    Link("d", "ld");
    Link("f", "lf");
    Link("missing", "lm");
    Link("loop", "loop");
    EXPECT_EQ(Find("l*"), Names({"ld/", "lf"}));
    EXPECT_EQ(Find("ld"), Names({"ld/"}));
    EXPECT_EQ(Find("lf"), Names({"lf"}));
    EXPECT_EQ(Find("lm"), Names());
    EXPECT_EQ(Find("loop"), Names());
}

TEST_F(SearchPosix, PipesAreFoundByNameOnly) {
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    Link("pipe", "link");
    EXPECT_EQ(Find("pipe"), Names({"pipe|"}));
    EXPECT_EQ(Find("link"), Names({"link|"}));
    EXPECT_EQ(Find("*"), Names({"./", "../"}));
    EXPECT_EQ(Find("pip?"), Names());
}

TEST_F(SearchPosix, DevicesAreFoundByNameOnly) {
    EXPECT_EQ(FindPath("/dev/null"), Names({"null|"}));
    EXPECT_EQ(FindPath("/dev/nul?"), Names());
    Link("/dev/null", "link");
    EXPECT_EQ(Find("link"), Names({"link|"}));
    EXPECT_EQ(Find("lin?"), Names());
}

TEST_F(SearchPosix, SocketsAreNeverFound) {
    MakeSocket("socket");
    Link("socket", "link");
    for (const char* const name : {"socket", "link", "socke?", "lin?"})
        EXPECT_EQ(Find(name), Names()) << name;
}

TEST_F(SearchPosix, AnEntryThatVanishedSinceIsDeliveredOrPassedOver) {
    Touch("a");
    Touch("b");
    Link("b", "c");
    FoundEntry entry;
    const auto search = platform::SearchFirst(scratch.Path("?").c_str(), entry);
    ASSERT_STREQ(entry.name, L"a");
    ASSERT_EQ(unlink(Path("b").c_str()), 0);
    ASSERT_TRUE(platform::SearchNext(search, entry)); // a file: its opening will fail
    EXPECT_STREQ(entry.name, L"b");
    EXPECT_FALSE(platform::SearchNext(search, entry)); // a link, looked at now
}

TEST_F(SearchPosix, AnArgumentOf260CharactersFindsNothing) {
    const std::string slashes(259 - scratch.Directory().string().size() - 1, '/');
    Touch("a");
    EXPECT_EQ(FindPath(scratch.Directory().string() + slashes + "a"), Names({"a"}));
    EXPECT_EQ(FindPath(scratch.Directory().string() + slashes + "/a"), Names());
    EXPECT_EQ(FindPath(scratch.Directory().string() + slashes + "?"), Names({"a"}));
    EXPECT_EQ(FindPath(scratch.Directory().string() + slashes + "/?"), Names());
}

TEST_F(SearchPosix, ASearchThatHasEndedMayBeAskedAndClosedAgain) {
    Touch("a");
    FoundEntry entry;
    const auto plain = platform::SearchFirst(scratch.Path("a").c_str(), entry);
    const auto pattern = platform::SearchFirst(scratch.Path("?").c_str(), entry);
    for (const auto search : {plain, pattern}) {
        EXPECT_NE(search, platform::noSearch);
        EXPECT_FALSE(platform::SearchNext(search, entry));
        EXPECT_FALSE(platform::SearchNext(search, entry));
        platform::SearchClose(search);
        platform::SearchClose(search);
    }
}

TEST_F(SearchPosix, AnOpenSearchHoldsNoDescriptor) {
    Touch("a");
    Touch("b");
    const std::size_t before = OpenDescriptors();
    FoundEntry entry;
    const auto search = platform::SearchFirst(scratch.Path("?").c_str(), entry);
    EXPECT_NE(search, platform::noSearch);
    EXPECT_EQ(OpenDescriptors(), before);
    platform::SearchClose(search);
}

// Longer names than a directory entry of this system's own file systems may have are passed over: their
// decoded text would not fit. Everything up to 255 bytes is found.
TEST_F(SearchPosix, TheLongestNamesAreFound) {
    const std::string longest(255, 'x');
    Touch(longest);
    EXPECT_EQ(Find("x*"), Names({longest}));
}

} // namespace
