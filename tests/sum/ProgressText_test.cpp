// SPDX-License-Identifier: MIT
#include "sum/ProgressText.h"

#include <gtest/gtest.h>

namespace sum {
namespace {

constexpr std::uint64_t mebi = 1024 * 1024;

TEST(ProgressText, TellsHowMuchOfAllIsDone) {
    EXPECT_EQ(ProgressText("dir/file", {3, 100 * mebi}, {40, 300 * mebi}, 2.0, 100),
              "dir/file  3/40 files  100.0 MiB of 300.0 MiB  50.0 MiB/s  0:04 left");
}

TEST(ProgressText, LeavesOutWhatIsNotKnown) {
    EXPECT_EQ(ProgressText("-", {1, 512}, {}, 0.1, 80), "-  1 file  512 B");
    EXPECT_EQ(ProgressText("f", {1, 2048}, {1, 0}, 1.0, 80), "f  1/1 file  2.0 KiB  2.0 KiB/s");
}

TEST(ProgressText, HoursAreTold) {
    EXPECT_EQ(ProgressText("f", {1, mebi}, {1, 3724 * mebi}, 1.0, 80),
              "f  1/1 file  1.0 MiB of 3.6 GiB  1.0 MiB/s  1:02:03 left");
}

TEST(ProgressText, LongPathsLoseTheirBeginning) {
    const std::string text = ProgressText(std::string(200, 'd') + "/name", {1, 0}, {}, 0, 40);
    EXPECT_EQ(text.size(), 39u);
    EXPECT_TRUE(text.starts_with("...d"));
    EXPECT_NE(text.find("d/name  1 file  0 B"), std::string::npos);
    EXPECT_EQ(ProgressText("a long name of a file", {1, 0}, {}, 0, 20), "");
}

TEST(ProgressText, NoControlCharacterGetsThrough) {
    EXPECT_EQ(ProgressText("a\x1b[2J\xff", {1, 0}, {}, 0, 80), "a?[2J?  1 file  0 B");
}

} // namespace
} // namespace sum
