// SPDX-License-Identifier: MIT
#include "sum/StateFile.h"

#include "sum/FileTime.h"

#include <gtest/gtest.h>
#include <limits>

namespace sum {
namespace {

TEST(StateRecords, AreReadAsTheyAreWritten) {
    for (const Name& path : {Name("a/b"), Name("line\nend \"quoted\" \\ \x01\x7f"),
                             Name("\xc3\xa4\xf0\x9f\x98\x80"), Name("no text \xff\xfe")}) {
        StateRecord written;
        written.path = path;
        written.size = 18446744073709551615U;
        written.modified = -5;
        written.stale = true;
        written.digests = {{"md5", "00ff"}, {"sha512-256", "ab"}};
        std::string line = written.Line();
        ASSERT_TRUE(line.ends_with('\n'));
        line.pop_back();
        StateRecord read;
        ASSERT_TRUE(ReadStateRecord(line, read)) << line;
        EXPECT_EQ(read.path, path);
        EXPECT_EQ(read.size, written.size);
        EXPECT_EQ(read.modified, written.modified);
        EXPECT_TRUE(read.stale);
        EXPECT_EQ(read.digests, written.digests);
    }
}

TEST(StateRecords, HaveTheFormOfJsonLines) {
    StateRecord record;
    record.path = "f";
    record.size = 6;
    record.digests = {{"md5", "00ff"}};
    EXPECT_EQ(record.Line(), "{\"path\":\"f\",\"size\":6,\"md5\":\"00ff\"}\n");
    record.modified = 7;
    EXPECT_EQ(record.Line(), "{\"path\":\"f\",\"size\":6,\"mtime\":7,\"md5\":\"00ff\"}\n");
}

TEST(StateRecords, UnderstandEscapesOfOthers) {
    StateRecord record;
    ASSERT_TRUE(ReadStateRecord(R"({"path":"\u00e4\/\ud83d\ude00","size":1,"new":[]})", record));
    EXPECT_EQ(record.path, "\xc3\xa4/\xf0\x9f\x98\x80");
}

TEST(StateRecords, ThatAreCutAreNone) {
    StateRecord record;
    const std::string whole = R"({"path":"f\u00e4","size":6,"mtime":7,"md5":"00ff"})";
    ASSERT_TRUE(ReadStateRecord(whole, record));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(ReadStateRecord(whole.substr(0, length), record)) << length;
    for (const char* line : {"{}", "[]", R"({"size":6})", R"({"path":"f","size":-1})",
                             R"({"path":"f","size":6x})", R"({"path":"f","mtime":99999999999999999999})",
                             R"({"path":"\ud83d"})", R"({"path":"\q"})", R"({"path":"f"} )"})
        EXPECT_FALSE(ReadStateRecord(line, record)) << line;
}

TEST(FileTimes, TellNothingOfAYoungFile) {
    constexpr std::int64_t second = 1'000'000'000;
    constexpr std::int64_t now = 1'700'000'000 * second;
    EXPECT_TRUE(IsSettled(now - 2 * second, now));
    EXPECT_TRUE(IsSettled(std::numeric_limits<std::int64_t>::min(), now));
    EXPECT_FALSE(IsSettled(now - 2 * second + 1, now));
    EXPECT_FALSE(IsSettled(now, now));
    EXPECT_FALSE(IsSettled(now + 3600 * second, now));
    EXPECT_FALSE(IsSettled(std::numeric_limits<std::int64_t>::max(), now));
}

} // namespace
} // namespace sum
