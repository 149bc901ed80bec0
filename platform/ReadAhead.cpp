// SPDX-License-Identifier: MIT
#include "platform/ReadAhead.h"

namespace platform {

namespace {

constexpr int filesAfterSlowRead = 256;

// More than cached bytes take on a slow machine.
bool IsSlow(std::chrono::nanoseconds time, std::size_t bytes) {
    return time > std::chrono::microseconds(40) + std::chrono::nanoseconds(bytes / 2);
}

} // namespace

void ReadPace::Add(std::chrono::nanoseconds time, std::size_t bytes) {
    if (IsSlow(time, bytes))
        left_.store(filesAfterSlowRead, std::memory_order_relaxed);
}

bool ReadPace::TakeFile() {
    return left_.load(std::memory_order_relaxed) > 0 && left_.fetch_sub(1, std::memory_order_relaxed) > 0;
}

} // namespace platform
