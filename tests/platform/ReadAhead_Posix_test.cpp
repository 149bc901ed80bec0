// SPDX-License-Identifier: MIT
#include "platform/ReadAhead.h"

#include "platform/Directory.h"
#include "tests/helpers/ScratchFiles.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using namespace std::chrono_literals;

constexpr std::size_t fileSize = 20'000;

class ReadAheadPosix : public testing::Test {
  protected:
    // A file that the cache does not hold, which cannot be had on every file system.
    std::string ColdFile(const std::string& name) {
        const std::string path = files_.Directory().string() + "/" + name;
        files_.Write(name, std::string(fileSize, 'x'));
        const int descriptor = open(path.c_str(), O_RDONLY);
        fsync(descriptor);
        posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
        close(descriptor);
        return path;
    }

    static bool IsCached(const std::string& path) {
        const int descriptor = open(path.c_str(), O_RDONLY);
        void* const memory = mmap(nullptr, fileSize, PROT_READ, MAP_SHARED, descriptor, 0);
        unsigned char pages[fileSize / 4096 + 1] = {};
        EXPECT_EQ(mincore(memory, fileSize, pages), 0);
        munmap(memory, fileSize);
        close(descriptor);
        return (pages[0] & 1) != 0;
    }

    // Reading goes on while others work.
    static bool IsCachedSoon(const std::string& path) {
        for (int i = 0; i < 500 && !IsCached(path); ++i)
            std::this_thread::sleep_for(10ms);
        return IsCached(path);
    }

    helpers::ScratchFiles files_;
};

TEST_F(ReadAheadPosix, AnAnnouncedFileIsReadIntoTheCache) {
    const std::string path = ColdFile("cold");
    if (IsCached(path))
        GTEST_SKIP() << "this file system keeps its files in memory";
    platform::Announce(path.c_str());
    EXPECT_TRUE(IsCachedSoon(path));
}

// Opening a pipe would let its writer begin.
TEST_F(ReadAheadPosix, APipeIsNotOpened) {
    const std::string path = files_.Directory().string() + "/pipe";
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    bool began = false;
    std::thread writer([&] {
        const int descriptor = open(path.c_str(), O_WRONLY);
        began = true;
        close(descriptor);
    });
    std::this_thread::sleep_for(20ms);
    platform::Announce(path.c_str());
    std::this_thread::sleep_for(50ms);
    EXPECT_FALSE(began);
    close(open(path.c_str(), O_RDONLY));
    writer.join();
}

TEST_F(ReadAheadPosix, WhatIsMissingIsPassedOver) {
    platform::Announce((files_.Directory().string() + "/missing").c_str());
    platform::Announce("");
}

// A walk announces what comes next once a read was slow, and only then.
TEST_F(ReadAheadPosix, ASearchAnnouncesItsNextFilesAfterASlowRead) {
    std::vector<std::string> paths;
    for (const char* const name : {"a.x", "b.x", "c.x", "d.x"})
        paths.push_back(ColdFile(name));
    if (IsCached(paths[0]))
        GTEST_SKIP() << "this file system keeps its files in memory";
    while (platform::readPace.TakeFile()) // what an earlier test left
        ;
    platform::FoundEntry entry;
    const auto search = platform::SearchFirst(files_.Path("*.x").c_str(), entry);
    ASSERT_TRUE(platform::SearchNext(search, entry));
    std::this_thread::sleep_for(50ms);
    for (const std::string& path : paths)
        EXPECT_FALSE(IsCached(path)) << path;
    platform::readPace.Add(1ms, 1);
    ASSERT_TRUE(platform::SearchNext(search, entry));
    platform::SearchClose(search);
    EXPECT_TRUE(IsCachedSoon(paths[2]));
    EXPECT_TRUE(IsCachedSoon(paths[3]));
    EXPECT_FALSE(IsCached(paths[0]));
    EXPECT_FALSE(IsCached(paths[1]));
}

} // namespace
