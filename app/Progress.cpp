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

// Looking at the clock takes longer than hashing a few bytes, so it waits for this many. A read counts as some more.
constexpr std::size_t bytesPerLook = 256 * 1024;
constexpr std::size_t extraPerRead = 16 * 1024;

ProgressState state;
Clock::time_point next;      // when the line is shown again
std::size_t sinceLook = 0;   // bytes since the clock was looked at
bool timed = false;          // whether it was, in this file
Clock::time_point firstLook; // when it was first
std::int64_t doneAtFirstLook = 0;

std::int64_t Speed(Clock::time_point now) {
    const auto elapsed = std::chrono::duration_cast<milliseconds>(now - firstLook);
    if (elapsed < enoughForSpeed)
        return 0;
    const auto bytes = static_cast<double>(state.done - doneAtFirstLook);
    return static_cast<std::int64_t>(bytes * 1000 / static_cast<double>(elapsed.count()));
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
    timed = false;
}

void Look() {
    const Clock::time_point now = Clock::now();
    sinceLook = 0;
    if (!timed) {
        timed = true;
        firstLook = now;
        doneAtFirstLook = state.done;
    }
    if (now >= next)
        Show(now);
}

void Read(std::size_t count) {
    state.done += static_cast<std::int64_t>(count);
    sinceLook += count + extraPerRead;
    if (sinceLook >= bytesPerLook)
        Look();
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
