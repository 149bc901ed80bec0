// SPDX-License-Identifier: MIT
// Test vectors kept as text.
#pragma once

#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace helpers {

// The lines of a file in tests/data, without empty lines and those that begin with #.
inline std::vector<std::string> VectorLines(const std::string& name) {
    std::ifstream file(FYRN_SOURCE_DIR "/tests/data/" + name);
    if (!file)
        throw std::runtime_error("cannot read tests/data/" + name);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#')
            lines.push_back(line);
    return lines;
}

} // namespace helpers
