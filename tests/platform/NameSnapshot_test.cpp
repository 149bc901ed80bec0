// SPDX-License-Identifier: MIT
#include "platform/NameSnapshot.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <random>

namespace {

using platform::NameSnapshot;

std::vector<std::string> TakeAll(NameSnapshot& snapshot) {
    std::vector<std::string> names;
    std::string_view name;
    std::uint8_t tag;
    while (snapshot.Take(name, tag))
        names.emplace_back(name);
    return names;
}

TEST(NameSnapshot, TheDirectoryAndItsParentComeFirst) {
    NameSnapshot snapshot;
    for (const char* const name : {"!", "...", "..", " ", "."})
        snapshot.Add(name, 0);
    snapshot.Sort();
    EXPECT_EQ(TakeAll(snapshot), std::vector<std::string>({".", "..", " ", "!", "..."}));
}

TEST(NameSnapshot, TagsStayWithTheirNames) {
    NameSnapshot snapshot;
    snapshot.Add("b", 255);
    snapshot.Add("a", 7);
    snapshot.Sort();
    std::string_view name;
    std::uint8_t tag;
    ASSERT_TRUE(snapshot.Take(name, tag));
    EXPECT_EQ(name, "a");
    EXPECT_EQ(tag, 7);
    ASSERT_TRUE(snapshot.Take(name, tag));
    EXPECT_EQ(name, "b");
    EXPECT_EQ(tag, 255);
    EXPECT_FALSE(snapshot.Take(name, tag));
    EXPECT_FALSE(snapshot.Take(name, tag));
}

TEST(NameSnapshot, NamesAheadAreLookedAtOnceAndStillTaken) {
    NameSnapshot snapshot;
    for (const char* const name : {"e", "d", "c", "b", "a"})
        snapshot.Add(name, 0);
    snapshot.Sort();
    std::string seen;
    std::string_view name;
    std::uint8_t tag;
    const auto take = [&] {
        ASSERT_TRUE(snapshot.Take(name, tag));
        seen += name;
    };
    const auto look = [&] {
        ASSERT_TRUE(snapshot.LookAhead(name, tag));
        seen += std::string(1, static_cast<char>(name[0] - 'a' + 'A'));
    };
    take();
    look();
    look();
    EXPECT_EQ(snapshot.LookedAt(), 2u);
    take();
    look();
    take();
    take();
    EXPECT_EQ(snapshot.LookedAt(), 0u);
    look();
    EXPECT_FALSE(snapshot.LookAhead(name, tag));
    take();
    EXPECT_FALSE(snapshot.Take(name, tag));
    EXPECT_EQ(seen, "aBCbDcdEe");
}

TEST(NameSnapshot, NamesOfEveryLengthAreKept) {
    NameSnapshot snapshot;
    std::vector<std::string> names;
    for (const std::size_t length : {0u, 1u, 255u, 256u, 1024u, 65535u})
        names.emplace_back(length, 'x');
    for (const std::string& name : names)
        snapshot.Add(name, 0);
    snapshot.Sort();
    EXPECT_EQ(TakeAll(snapshot), names);
}

// The order as it is described, computed in another way: by keys that are compared as a whole, in units that
// compare as numbers.
TEST(NameSnapshot, RandomNamesComeInOrder) {
    constexpr unsigned seed = 7;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    std::vector<std::array<std::u16string, 2>> keys;
    NameSnapshot snapshot;
    for (int i = 0; i < 5000; ++i) {
        std::string name = "x";
        for (std::size_t length = random() % 5; length > 0; --length)
            name += "aAbB.zZ_[{~\x80\xFF"[random() % 13];
        snapshot.Add(name, 0);
        auto& [upper, raw] = keys.emplace_back();
        for (const char byte : name) {
            raw += static_cast<unsigned char>(byte);
            upper += static_cast<unsigned char>(byte >= 'a' && byte <= 'z' ? byte - 32 : byte);
        }
    }
    std::sort(keys.begin(), keys.end());
    snapshot.Sort();
    std::vector<std::string> expected;
    for (const auto& [upper, raw] : keys)
        expected.emplace_back(raw.begin(), raw.end());
    EXPECT_EQ(TakeAll(snapshot), expected);
}

} // namespace
