// SPDX-License-Identifier: MIT
// Messages with their digests, from the text files of tests/data.
#pragma once

#include "tests/helpers/Bytes.h"

#include <string>
#include <vector>

namespace helpers {

struct KnownAnswer {
    std::string function;
    Bytes message;
    std::string digest; // lower-case hex
};

// From lines of three fields: function, message, digest in hex. A message is hex digits or text between quotes; behind
// it, an asterisk and a count repeat it. Throws std::runtime_error when there is no line or one not of this form.
std::vector<KnownAnswer> KnownAnswers(const std::vector<std::string>& lines);

// A file of published digests.
struct Publication {
    std::string file; // its name
    std::vector<KnownAnswer> answers;
};

// Every file of tests/data/published. Throws std::runtime_error when there is none or one cannot be read.
std::vector<Publication> Publications();

} // namespace helpers
