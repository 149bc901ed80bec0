// SPDX-License-Identifier: MIT
#include "sum/Pairing.h"

#include "sum/Findings.h"

#include <gtest/gtest.h>

namespace sum {
namespace {

// Files whose content is a number; 0 stands for an empty file.
class Pairings : public testing::Test {
  protected:
    static FunctionChoice Choice(const char* name) { return ChoiceOf(fyrn::Function::Named(name)); }

    const KeptDigest* Digest(int content, const KeptDigest* next = nullptr) {
        const std::uint32_t number = entries.Functions().Of(Choice("CRC-32"), false);
        const std::vector<std::byte> bytes = {std::byte{0}, std::byte{0}, std::byte{0},
                                              static_cast<std::byte>(content)};
        return entries.Keep(number, bytes, next);
    }

    void List(const char* name, int content, Entry::Found state) {
        Entry& entry = entries.At(name);
        entry.listed.digests = Digest(content);
        entry.state = state;
    }

    void Find(const char* name, int content) {
        FoundFile& file = files.emplace_back();
        file.key = name;
        file.kind = FoundFile::Kind::isNew;
        file.content.size = content == 0 ? 0 : 1;
        file.content.digests = Digest(content);
    }

    // "name CLASS origin", one after the other.
    std::string Result() {
        PairFiles(entries, files);
        std::string text;
        for (const Finding& finding : FindingsOf(entries, files, false)) {
            text.append(text.empty() ? "" : ", ").append(finding.key).append(" ");
            text += TextOf(finding.outcome);
            if (finding.file != nullptr && finding.file->origin != nullptr)
                text.append(" ").append(finding.file->origin->name);
        }
        return text;
    }

    Entries entries;
    std::deque<FoundFile> files;
};

TEST_F(Pairings, PreferTheSameLastComponent) {
    List("d/a", 1, Entry::Found::missing);
    List("d/b", 1, Entry::Found::missing);
    Find("c", 1);
    Find("e/a", 1);
    EXPECT_EQ(Result(), "c RENAMED d/b, e/a RENAMED d/a");
}

TEST_F(Pairings, FollowTheOrderOfPaths) {
    List("y", 1, Entry::Found::missing);
    List("x", 1, Entry::Found::missing);
    Find("q", 1);
    EXPECT_EQ(Result(), "q RENAMED x, y MISSING");
}

TEST_F(Pairings, LeaveCopiesOfWhatDidNotChange) {
    List("x", 1, Entry::Found::same);
    List("a", 1, Entry::Found::same);
    List("old", 1, Entry::Found::missing);
    Find("m", 1);
    Find("n", 1);
    EXPECT_EQ(Result(), "m RENAMED old, n COPY a");
}

TEST_F(Pairings, TakeNoCopyOfWhatChangedOrWasRenamed) {
    List("gone", 1, Entry::Found::missing);
    Find("b", 1);
    Find("c", 1);
    EXPECT_EQ(Result(), "b RENAMED gone, c NEW");
}

TEST_F(Pairings, LeaveEmptyFilesAlone) {
    List("gone", 0, Entry::Found::missing); // the CRC of nothing is 0
    List("there", 0, Entry::Found::same);
    Find("b", 0);
    EXPECT_EQ(Result(), "b NEW, gone MISSING");
}

TEST_F(Pairings, NeedAllDigestsOfAnEntry) {
    Entry& entry = entries.At("gone");
    const std::uint32_t md5 = entries.Functions().Of(Choice("MD5"), false);
    const std::vector<std::byte> one(16, std::byte{1}), other(16, std::byte{2});
    entry.listed.digests = Digest(1, entries.Keep(md5, one, nullptr));
    entry.state = Entry::Found::missing;
    Find("b", 1);
    files[0].content.digests = Digest(1, entries.Keep(md5, other, nullptr));
    Find("c", 1);
    files[1].content.digests = Digest(1, entries.Keep(md5, one, nullptr));
    EXPECT_EQ(Result(), "b NEW, c RENAMED gone");
}

TEST_F(Pairings, TotalsCountARenamedFileOnce) {
    List("gone", 1, Entry::Found::missing);
    List("same", 2, Entry::Found::same);
    Find("b", 1);
    PairFiles(entries, files);
    const Totals totals = TotalsOf(entries, files);
    EXPECT_EQ(totals[static_cast<std::size_t>(Outcome::renamed)], 1u);
    EXPECT_EQ(totals[static_cast<std::size_t>(Outcome::same)], 1u);
    EXPECT_EQ(totals[static_cast<std::size_t>(Outcome::missing)], 0u);
}

} // namespace
} // namespace sum
