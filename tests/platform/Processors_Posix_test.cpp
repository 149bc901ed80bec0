// SPDX-License-Identifier: MIT
#include "platform/Processors.h"

#include <gtest/gtest.h>

#include <sched.h>

namespace {

class Affinity {
  public:
    Affinity() { sched_getaffinity(0, sizeof before_, &before_); }
    ~Affinity() { sched_setaffinity(0, sizeof before_, &before_); }
    int Count() const { return CPU_COUNT(&before_); }
    void KeepOne() const {
        cpu_set_t one;
        CPU_ZERO(&one);
        int processor = 0;
        while (!CPU_ISSET(processor, &before_))
            ++processor;
        CPU_SET(processor, &one);
        ASSERT_EQ(sched_setaffinity(0, sizeof one, &one), 0);
    }

  private:
    cpu_set_t before_;
};

TEST(Processors, AreNoMoreThanTheProcessMayRunOn) {
    const Affinity affinity;
    EXPECT_GE(platform::UsableProcessors(), 1u);
    EXPECT_LE(platform::UsableProcessors(), static_cast<unsigned>(affinity.Count()));
    affinity.KeepOne();
    EXPECT_EQ(platform::UsableProcessors(), 1u);
}

} // namespace
