// SPDX-License-Identifier: MIT
#include "app/Report.h"

#include "app/Console.h"
#include "app/HashTable.h"
#include "platform/Process.h"

namespace {

constexpr std::chrono::milliseconds patience{200};

} // namespace

void Report::PrintHeader(const RunContext& context) {
    ConsolePrintf(L"Hashes: ");
    for (std::size_t row = 0; row < hashRowCount; ++row)
        if (IsSelected(context, row))
            ConsolePrintf(L"%s ", hashTable[row].name);
    ConsolePrintf(L"\n\n");
}

void Report::PrintName(const RunContext& context, const platform::PathParts& parts) {
    if (context.verbosity == 2)
        ConsolePrintf(L"%s%s\n", parts.base, parts.extension);
    else if (context.verbosity == 3)
        ConsolePrintf(L"%s%s%s%s\n", parts.drive, parts.directory, parts.base, parts.extension);
}

void Report::PrintDigest(const RunContext& context) {
    ConsolePrintf(L"  %S\n", context.hashText);
}

bool Report::PassOn() {
    platform::FlushStandardOutput();
    ExpectReader();
    return platform::FateOfStandardOutput() == platform::OutputFate::Arrives;
}

void Report::PassOnInTime(Clock::time_point now) noexcept {
    if (now < next_)
        return;
    next_ = now + patience;
    platform::FlushStandardOutput();
}

bool Report::HasReader() const noexcept {
    return platform::FateOfStandardOutput() != platform::OutputFate::Unread;
}

void Report::ExpectReader() const {
    if (!HasReader())
        throw ReaderGone{};
}
