// SPDX-License-Identifier: MIT
#include "sum/FileTime.h"

#include <chrono>

namespace sum {

std::int64_t Now() {
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(sinceEpoch).count();
}

bool IsSettled(std::int64_t modified, std::int64_t now) {
    constexpr std::int64_t coarsestStep = 2'000'000'000;
    return modified <= now - coarsestStep;
}

} // namespace sum
