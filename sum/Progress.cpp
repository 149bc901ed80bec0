// SPDX-License-Identifier: MIT
#include "sum/Progress.h"

#include "platform/ByteStream.h"
#include "platform/Status.h"
#include "platform/Text.h"
#include "sum/Output.h"
#include "sum/ProgressText.h"

#include <algorithm>

namespace sum {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds silence{2000}; // a run that ends sooner shows nothing
constexpr milliseconds interval{100};
constexpr milliseconds intervalOfLines{1000}; // where no terminal takes a line back

// Looking at the clock takes longer than hashing a few bytes, so it waits for this many. A file
// counts as some more.
constexpr std::size_t bytesPerLook = 256 * 1024;
constexpr std::size_t extraPerFile = 16 * 1024;

constexpr std::size_t usualColumns = 80; // where no terminal tells its width

} // namespace

Progress::Progress(const Options& options)
    : shown_(options.progress == Watch::always ||
             (options.progress == Watch::automatic && platform::StatusColumns() != 0)),
      start_(Clock::now()), next_(start_ + (options.progress == Watch::always ? milliseconds{0} : silence)) {}

Progress::~Progress() {
    platform::WipeStatus();
}

void Progress::Begin(const Name& name) {
    if (!shown_)
        return;
    name_ = name;
    ++done_.files;
    Look();
}

void Progress::WillWait() {
    Out().Flush();
}

void Progress::Read(std::size_t bytes) {
    if (!shown_)
        return;
    done_.bytes += bytes;
    sinceLook_ += bytes;
    Look();
}

void Progress::Look() {
    sinceLook_ += extraPerFile;
    if (sinceLook_ < bytesPerLook)
        return;
    sinceLook_ = 0;
    const Clock::time_point now = Clock::now();
    if (now >= next_)
        Show(now);
}

void Progress::Show(Clock::time_point now) {
    const std::size_t width = platform::StatusColumns();
    const std::size_t columns = std::min(width != 0 ? width : usualColumns, platform::maxStatusLength);
    const double seconds = std::chrono::duration<double>(now - start_).count();
    const std::string text = ProgressText(name_, done_, total_, seconds, columns);
    next_ = now + (width != 0 ? interval : intervalOfLines);
    if (width != 0 && !text.empty())
        platform::ShowStatus(platform::DecodeName(text).c_str());
    else if (width == 0 && !platform::ErrorsAreTerminal())
        platform::WriteToErrors(text + '\n');
}

} // namespace sum
