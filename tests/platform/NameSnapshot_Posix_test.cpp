// SPDX-License-Identifier: MIT
#include "platform/NameSnapshot.h"

#include "tests/platform/EndChild_Posix.h"

#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

long PeakKilobytes() {
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// In a process of its own, so that memory used before does not hide what is used here.
TEST(NameSnapshotPosix, TwoHundredThousandNamesTakeLessThan40Megabytes) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer keeps freed memory";
#endif
    const pid_t child = fork();
    if (child == 0) {
        const long before = PeakKilobytes();
        platform::NameSnapshot snapshot;
        for (int i = 0; i < 200000; ++i)
            snapshot.Add(std::to_string(i).append(" is a name of common length"), 0);
        snapshot.Sort();
        EndChild(static_cast<int>((PeakKilobytes() - before) / 1024)); // 8 bits are enough for 40
    }
    int status;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_LT(WEXITSTATUS(status), 40);
    EXPECT_GE(WEXITSTATUS(status), 5); // the bytes of the names alone
}

} // namespace
