// SPDX-License-Identifier: MIT
#include "tests/helpers/KnownAnswers.h"

#include <fstream>
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

std::vector<KnownAnswer> ReadKnownAnswers(const std::string& path) {
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::vector<KnownAnswer> answers;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#')
            answers.push_back(ParseLine(line));
    if (answers.empty())
        throw std::runtime_error("no known answers in " + path);
    return answers;
}

} // namespace helpers
