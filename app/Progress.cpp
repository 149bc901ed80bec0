// SPDX-License-Identifier: MIT
#include "app/Progress.h"

#include "app/HashTable.h"
#include "app/ProgressText.h"
#include "platform/Status.h"
#include "support/ReadObserver.h"

#include <chrono>
#include <iterator>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds silence{2000}; // a run that ends sooner shows nothing
constexpr milliseconds interval{100};
constexpr milliseconds enoughForSpeed{200};

ProgressState state;
Clock::time_point next;  // when the line is shown again
Clock::time_point begun; // when the reading of this file for this function was

std::int64_t Speed(Clock::time_point now) {
    const auto elapsed = std::chrono::duration_cast<milliseconds>(now - begun);
    return elapsed < enoughForSpeed ? 0
                                    : static_cast<std::int64_t>(static_cast<double>(state.done) * 1000 /
                                                                static_cast<double>(elapsed.count()));
}

void Show(Clock::time_point now) {
    wchar_t text[platform::maxStatusLength + 1];
    next = now + interval;
    state.speed = Speed(now);
    ProgressText(state, platform::StatusColumns(), text, std::size(text));
    if (*text != L'\0')
        platform::ShowStatus(text);
}

void Begin(std::int64_t size) {
    state.size = size;
    state.done = 0;
    begun = Clock::now();
}

void Read(std::size_t count) {
    state.done += static_cast<std::int64_t>(count);
    const Clock::time_point now = Clock::now();
    if (now >= next)
        Show(now);
}

constexpr ReadObserver observer = {Begin, Read};

} // namespace

void StartProgress(const RunContext& context) {
    if (platform::StatusColumns() == 0)
        return;
    state.functionCount = CountSelectedHashes(context);
    next = Clock::now() + silence;
    readObserver = &observer;
}

void NoteFile(const wchar_t* path) {
    state.path = path;
    state.number = 0;
}

void NoteRow(std::size_t row) {
    state.function = hashTable[row].name;
    ++state.number;
}

void EndProgress() {
    readObserver = nullptr;
    platform::WipeStatus();
}
