// SPDX-License-Identifier: MIT
#include "sum/ProgressText.h"

#include "sum/Utf8.h"

#include <algorithm>

namespace sum {

namespace {

// "1.5 GiB": a tenth is shown from KiB on.
std::string BytesText(std::uint64_t bytes) {
    constexpr const char* units[] = {" B", " KiB", " MiB", " GiB", " TiB", " PiB", " EiB"};
    std::size_t unit = 0;
    std::uint64_t tenths = 0;
    for (; bytes >= 1024; ++unit) {
        tenths = bytes % 1024 * 10 / 1024;
        bytes /= 1024;
    }
    const std::string fraction = unit == 0 ? "" : "." + std::to_string(tenths);
    return std::to_string(bytes) + fraction + units[unit];
}

std::string TwoDigits(std::uint64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

// "1:02:03", or "2:03" within the hour.
std::string TimeText(std::uint64_t seconds) {
    const std::string end = ":" + TwoDigits(seconds % 60);
    if (seconds < 3600)
        return std::to_string(seconds / 60) + end;
    return std::to_string(seconds / 3600) + ":" + TwoDigits(seconds / 60 % 60) + end;
}

std::string Figures(const Amount& done, const Amount& total, double seconds) {
    constexpr double enough = 0.2; // to tell a speed
    std::string text = "  " + std::to_string(done.files);
    if (total.files != 0)
        text += "/" + std::to_string(total.files);
    text += std::max(done.files, total.files) == 1 ? " file  " : " files  ";
    text += BytesText(done.bytes);
    if (total.bytes != 0)
        text += " of " + BytesText(total.bytes);
    const double speed = seconds < enough ? 0 : static_cast<double>(done.bytes) / seconds;
    if (speed >= 1)
        text += "  " + BytesText(static_cast<std::uint64_t>(speed)) + "/s";
    if (speed >= 1 && total.bytes > done.bytes)
        text += "  " +
                TimeText(static_cast<std::uint64_t>(static_cast<double>(total.bytes - done.bytes) / speed)) +
                " left";
    return text;
}

// Whatever is not known to be narrow may take two columns.
std::size_t ColumnsOf(const Character& character) {
    return character.code < 0x300 ? 1 : 2;
}

// The path with "?" for what cannot be shown; of a long one the end, which tells most.
std::string PathText(std::string_view path, std::size_t columns) {
    constexpr std::string_view omitted = "...";
    std::string text;
    std::vector<std::pair<std::size_t, std::size_t>> characters; // place, columns
    std::size_t taken = 0;
    while (!path.empty()) {
        const Character character = FirstCharacter(path);
        characters.emplace_back(text.size(), ColumnsOf(character));
        taken += ColumnsOf(character);
        text += character.showable ? path.substr(0, character.length) : "?";
        path.remove_prefix(character.length);
    }
    if (taken <= columns)
        return text;
    std::size_t first = 0;
    for (; taken > columns - omitted.size(); ++first)
        taken -= characters[first].second;
    return std::string(omitted) + (first < characters.size() ? text.substr(characters[first].first) : "");
}

} // namespace

std::string ProgressText(const Name& name, const Amount& done, const Amount& total, double seconds,
                         std::size_t columns) {
    constexpr std::size_t leastPath = 8;
    const std::string figures = Figures(done, total, seconds);
    // The last column stays free, or the line would be broken.
    const std::size_t taken = figures.size() + 1;
    if (columns < taken + leastPath)
        return {};
    return PathText(name, columns - taken) + figures;
}

} // namespace sum
