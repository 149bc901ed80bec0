// SPDX-License-Identifier: MIT
#include "app/Progress.h"

#include "platform/Status.h"

#include <iterator>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds silence{2000}; // a run that ends sooner shows nothing
constexpr milliseconds interval{100};

} // namespace

Progress::~Progress() {
    platform::WipeStatus();
}

void Progress::BeginRun(unsigned int functionCount) {
    state_.functionCount = functionCount;
    next_ = Clock::now() + silence;
}

void Progress::BeginFile(const wchar_t* path) {
    state_.path = path;
    state_.number = 0;
}

void Progress::BeginRow(const wchar_t* function) {
    state_.function = function;
    ++state_.number;
}

void Progress::BeginReading(std::int64_t size) {
    state_.size = size;
    state_.done = 0;
    speed_ = ReadSpeed();
}

void Progress::Count(std::size_t bytes) {
    state_.done += static_cast<std::int64_t>(bytes);
}

void Progress::ShowInTime(Clock::time_point now) noexcept {
    state_.speed = speed_.Note(now, state_.done);
    if (now < next_)
        return;
    next_ = now + interval;
    wchar_t text[platform::maxStatusLength + 1];
    ProgressText(state_, platform::StatusColumns(), text, std::size(text));
    if (*text != L'\0')
        platform::ShowStatus(text);
}
