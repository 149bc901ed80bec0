// SPDX-License-Identifier: MIT
#include "app/ReadSpeed.h"

#include <gtest/gtest.h>

namespace {

using std::chrono::milliseconds;

constexpr ReadSpeed::Clock::time_point opened{};

TEST(ReadSpeed, IsNotKnownBeforeAFifthOfASecond) {
    ReadSpeed speed;
    EXPECT_EQ(speed.Note(opened, 100), 0);
    EXPECT_EQ(speed.Note(opened + milliseconds(199), 1000), 0);
    EXPECT_EQ(speed.Note(opened + milliseconds(200), 1100), 5000);
}

TEST(ReadSpeed, CountsNeitherTheTimeNorTheBytesUpToTheFirstNote) {
    ReadSpeed speed;
    speed.Note(opened + milliseconds(3000), 500'000);
    EXPECT_EQ(speed.Note(opened + milliseconds(4000), 1'500'000), 1'000'000);
    EXPECT_EQ(speed.Note(opened + milliseconds(5000), 1'600'000), 550'000); // the mean of all that time
}

TEST(ReadSpeed, DoesNotOverflowWithTheLargestFiles) {
    ReadSpeed speed;
    speed.Note(opened, 0);
    EXPECT_EQ(speed.Note(opened + milliseconds(1000), std::int64_t{1} << 62), std::int64_t{1} << 62);
}

} // namespace
