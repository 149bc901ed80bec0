// SPDX-License-Identifier: MIT
#include "tests/helpers/VectorFile.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace helpers {
namespace {

Vector ParseLine(const std::string& line) {
    std::istringstream fields(line);
    std::string digest;
    std::size_t count = 0;
    std::string hex;
    if (!(fields >> digest >> count >> hex))
        throw std::runtime_error("no test vector: " + line);
    const Bytes bytes = FromHex(hex);
    Vector vector;
    for (; count != 0; --count)
        vector.message.insert(vector.message.end(), bytes.begin(), bytes.end());
    vector.digest = ToHex(FromHex(digest));
    return vector;
}

} // namespace

std::vector<Vector> ReadVectors(const std::string& path) {
    std::ifstream file(path);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    std::vector<Vector> vectors;
    for (std::string line; std::getline(file, line);)
        if (!line.empty() && line[0] != '#')
            vectors.push_back(ParseLine(line));
    if (vectors.empty())
        throw std::runtime_error("no test vectors in " + path);
    return vectors;
}

} // namespace helpers
