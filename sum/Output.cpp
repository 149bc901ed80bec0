// SPDX-License-Identifier: MIT
#include "sum/Output.h"

#include "platform/ByteStream.h"
#include "platform/Status.h"
#include "sum/Messages.h"

#include <utility>

namespace sum {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds longestWait{100};
constexpr std::size_t filePiece = 64 * 1024;

} // namespace

// Nothing is tried again after a failure, so that the first one is what is told.
void StandardOutput::WriteNow(std::string_view lines) {
    if (failed_ || lines.empty())
        return;
    platform::WipeStatus();
    if (const int error = platform::WriteToOutput(lines)) {
        failed_ = true;
        throw OutputError("write error: " + ErrorText(error));
    }
}

void StandardOutput::Flush() {
    WriteNow(std::exchange(held_, {}));
}

void StandardOutput::Write(std::string_view lines) {
    static const bool terminal = platform::OutputIsTerminal();
    if (held_.size() + lines.size() > platform::wholeToPipe)
        Flush();
    if (lines.size() > platform::wholeToPipe)
        return WriteNow(lines);
    held_ += lines;
    const Clock::time_point now = Clock::now();
    if (terminal || now - lastWrite_ > longestWait) {
        lastWrite_ = now;
        Flush();
    }
}

StandardOutput& Out() {
    static StandardOutput output;
    return output;
}

OutputFile::OutputFile(Name name) : name_(std::move(name)) {
    Check(file_.Create(name_));
    file_.TakeRightsOf(name_); // of the file that is replaced
}

void OutputFile::Check(int error) const {
    if (error != 0)
        throw OutputError(Quoted(name_) + ": " + ErrorText(error));
}

void OutputFile::Write(std::string_view lines) {
    held_ += lines;
    if (held_.size() >= filePiece)
        Check(file_.Write(std::exchange(held_, {})));
}

void OutputFile::Complete() {
    Check(file_.Write(std::exchange(held_, {})));
    Check(file_.Complete());
}

} // namespace sum
