// SPDX-License-Identifier: MIT
#include "app/Watch.h"

namespace {

using Clock = std::chrono::steady_clock;

// Looking at the clock takes longer than hashing a few bytes, so it waits for this many. A read counts as some more.
constexpr std::size_t bytesPerLook = 256 * 1024;
constexpr std::size_t extraPerRead = 16 * 1024;

} // namespace

Watch::Watch(Report& report, Progress& progress) : report_(report), progress_(progress) {
    readObserver = this;
}

Watch::~Watch() {
    readObserver = nullptr;
}

// The clock is looked at for each file, however small: opening it may have taken long, and so may reading it.
void Watch::Begin(std::int64_t size) noexcept {
    progress_.BeginReading(size);
    report_.PassOnInTime(Clock::now());
}

bool Watch::Read(std::size_t count) noexcept {
    progress_.Count(count);
    sinceLook_ += count + extraPerRead;
    if (sinceLook_ >= bytesPerLook)
        Look();
    return report_.HasReader();
}

void Watch::Look() noexcept {
    const Clock::time_point now = Clock::now();
    sinceLook_ = 0;
    report_.PassOnInTime(now);
    progress_.ShowInTime(now);
}
