// SPDX-License-Identifier: MIT
#include "platform/ReadAhead.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using platform::ReadPace;

int FilesToAnnounce(ReadPace& pace) {
    int files = 0;
    while (pace.TakeFile())
        ++files;
    return files;
}

TEST(ReadPace, OneFileInEightIsTimed) {
    ReadPace pace;
    int timed = 0;
    for (int i = 0; i < 800; ++i)
        timed += pace.IsTimed() ? 1 : 0;
    EXPECT_EQ(timed, 100);
}

TEST(ReadPace, NothingIsAnnouncedWhileReadsAreFast) {
    ReadPace pace;
    EXPECT_EQ(FilesToAnnounce(pace), 0);
    pace.Add(30us, 0);
    pace.Add(50us, 64 * 1024);
    pace.Add(500us, 1'000'000);
    EXPECT_EQ(FilesToAnnounce(pace), 0);
}

TEST(ReadPace, ASlowReadHasSomeHundredFilesAnnounced) {
    ReadPace pace;
    pace.Add(90us, 4096);
    EXPECT_EQ(FilesToAnnounce(pace), 256);
    EXPECT_EQ(FilesToAnnounce(pace), 0);
    pace.Add(600us, 1'000'000);
    pace.Add(90us, 100);
    EXPECT_EQ(FilesToAnnounce(pace), 256);
}

} // namespace
