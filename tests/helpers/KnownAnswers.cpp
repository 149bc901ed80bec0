// SPDX-License-Identifier: MIT
#include "tests/helpers/KnownAnswers.h"

#include "tests/helpers/VectorLines.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <regex>
#include <stdexcept>

namespace helpers {
namespace {

Bytes Repeated(const Bytes& piece, std::size_t count) {
    Bytes message;
    message.reserve(piece.size() * count);
    for (; count != 0; --count)
        message.insert(message.end(), piece.begin(), piece.end());
    return message;
}

KnownAnswer ParseLine(const std::string& line) {
    static const std::regex form(R"re((\S+) (?:"([^"]*)"|([0-9a-f]+))(?:\*([0-9]+))? ([0-9a-f]+))re");
    std::smatch fields;
    if (!std::regex_match(line, fields, form))
        throw std::runtime_error("no known answer: " + line);
    const Bytes piece = fields[3].matched ? FromHex(fields[3].str()) : BytesOf(fields[2].str());
    const std::size_t count = fields[4].matched ? std::stoul(fields[4]) : 1;
    return {fields[1], Repeated(piece, count), ToHex(FromHex(fields[5].str()))};
}

} // namespace

std::vector<KnownAnswer> KnownAnswers(const std::vector<std::string>& lines) {
    if (lines.empty())
        throw std::runtime_error("no known answers");
    std::vector<KnownAnswer> answers;
    std::transform(lines.begin(), lines.end(), std::back_inserter(answers), ParseLine);
    return answers;
}

std::vector<Publication> Publications() {
    std::vector<Publication> publications;
    for (const auto& entry : std::filesystem::directory_iterator(FYRN_SOURCE_DIR "/tests/data/published")) {
        const std::string file = entry.path().filename().string();
        publications.push_back({file, KnownAnswers(VectorLines("published/" + file))});
    }
    if (publications.empty())
        throw std::runtime_error("tests/data/published is empty");
    return publications;
}

} // namespace helpers
