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

// Reads lines of three fields: function, message, digest in hex. A message is hex digits or text between quotes;
// behind it, an asterisk and a count repeat it. Lines that begin with # and empty lines are passed over. Throws
// std::runtime_error when the file cannot be read, holds no line or one that is not of this form.
std::vector<KnownAnswer> ReadKnownAnswers(const std::string& path);

} // namespace helpers
