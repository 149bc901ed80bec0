// SPDX-License-Identifier: MIT
#include "app/ProgressText.h"

#include "support/StringHelper.h"

#include <algorithm>
#include <cwchar>
#include <iterator>

namespace {

constexpr std::size_t maxPart = 32;

// "1.5 GiB": a tenth is shown from KiB on.
void FormatBytes(std::int64_t bytes, wchar_t (&text)[maxPart]) {
    constexpr const wchar_t* units[] = {L"B", L"KiB", L"MiB", L"GiB", L"TiB", L"PiB", L"EiB"};
    std::size_t unit = 0;
    std::int64_t tenths = 0;
    for (; bytes >= 1024; ++unit) {
        tenths = bytes % 1024 * 10 / 1024;
        bytes /= 1024;
    }
    if (unit == 0)
        FormatToBuffer(text, maxPart, L"%I64d B", bytes);
    else
        FormatToBuffer(text, maxPart, L"%I64d.%I64d %s", bytes, tenths, units[unit]);
}

// "1:02:03", or "2:03" within the hour.
void FormatTime(std::int64_t seconds, wchar_t (&text)[maxPart]) {
    if (seconds >= 3600)
        FormatToBuffer(text, maxPart, L"%I64d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
    else
        FormatToBuffer(text, maxPart, L"%d:%02d", seconds / 60, seconds % 60);
}

// What is left of this file, at this speed for the functions that follow as well.
std::int64_t SecondsLeft(const ProgressState& state) {
    const double functions = state.functionCount - state.number;
    const double bytes = static_cast<double>(std::max<std::int64_t>(state.size - state.done, 0)) +
                         static_cast<double>(state.size) * functions;
    return static_cast<std::int64_t>(bytes / static_cast<double>(state.speed));
}

// Appends formatted text; what does not fit is cut.
template <class... Arguments>
void Append(wchar_t* text, std::size_t capacity, const wchar_t* format, const Arguments&... arguments) {
    const std::size_t length = std::wcslen(text);
    FormatToBuffer(text + length, capacity - length, format, arguments...);
}

// Everything but the path, with two spaces before each part.
void FormatFigures(const ProgressState& state, wchar_t* text, std::size_t capacity) {
    wchar_t part[maxPart];
    FormatBytes(state.done, part);
    FormatToBuffer(text, capacity, L"  %s %u/%u  %s", state.function, state.number, state.functionCount,
                   part);
    if (state.size > 0) {
        FormatBytes(state.size, part);
        Append(text, capacity, L" of %s", part);
    }
    if (state.speed > 0) {
        FormatBytes(state.speed, part);
        Append(text, capacity, L"  %s/s", part);
    }
    if (state.size > 0 && state.speed > 0) {
        FormatTime(SecondsLeft(state), part);
        Append(text, capacity, L"  %s left", part);
    }
}

// Characters that begin a line, or change the direction of what stands around them.
bool IsFormatting(std::uint32_t code) {
    return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x2028 && code <= 0x202E) ||
           (code >= 0x2066 && code <= 0x2069);
}

// Terminals do something else with control characters than to show them, and nothing with halves of characters.
bool IsShown(wchar_t character) {
    const auto code = static_cast<std::uint32_t>(character);
    return code >= 0x20 && !(code >= 0x7F && code < 0xA0) && !(code >= 0xD800 && code < 0xE000) &&
           !IsFormatting(code);
}

// Whatever is not known to be narrow may take two columns.
std::size_t ColumnsOf(wchar_t character) {
    return static_cast<std::uint32_t>(character) < 0x300 ? 1 : 2;
}

// The end of the path, which tells most, in at most this many columns and characters.
const wchar_t* Tail(const wchar_t* path, std::size_t columns) {
    const wchar_t* tail = path + std::wcslen(path);
    while (tail != path && ColumnsOf(tail[-1]) <= columns)
        columns -= ColumnsOf(*--tail);
    return tail;
}

void AppendPath(const wchar_t* path, std::size_t columns, wchar_t* text) {
    constexpr const wchar_t* omitted = L"...";
    const wchar_t* tail = Tail(path, columns);
    if (tail != path) {
        text = std::copy_n(omitted, 3, text);
        tail = Tail(path, columns - 3);
    }
    text = std::transform(tail, tail + std::wcslen(tail), text,
                          [](wchar_t character) { return IsShown(character) ? character : L'?'; });
    *text = L'\0';
}

} // namespace

void ProgressText(const ProgressState& state, std::size_t columns, wchar_t* text, std::size_t capacity) {
    constexpr std::size_t leastPath = 8;
    wchar_t figures[160];
    FormatFigures(state, figures, std::size(figures));
    const std::size_t room = std::min(columns, capacity);
    const std::size_t taken =
        std::wcslen(figures) + 1; // the last column stays free, or the line would be broken
    *text = L'\0';
    if (room < taken + leastPath)
        return;
    AppendPath(state.path, room - taken, text);
    Append(text, capacity, L"%s", figures);
}
