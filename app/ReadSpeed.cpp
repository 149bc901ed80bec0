// SPDX-License-Identifier: MIT
#include "app/ReadSpeed.h"

namespace {

using std::chrono::milliseconds;

constexpr milliseconds enough{200};

} // namespace

std::int64_t ReadSpeed::Note(Clock::time_point now, std::int64_t done) {
    if (!noted_) {
        noted_ = true;
        start_ = now;
        doneAtStart_ = done;
    }
    const auto elapsed = std::chrono::duration_cast<milliseconds>(now - start_);
    if (elapsed < enough)
        return 0;
    const auto bytes = static_cast<double>(done - doneAtStart_);
    return static_cast<std::int64_t>(bytes * 1000 / static_cast<double>(elapsed.count()));
}
