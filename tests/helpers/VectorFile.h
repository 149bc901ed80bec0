// SPDX-License-Identifier: MIT
// Test vectors from text files.
#pragma once

#include "tests/helpers/Bytes.h"

#include <string>
#include <string_view>
#include <vector>

namespace helpers {

struct Vector {
    Bytes message;
    std::string digest; // lower-case hex
};

// Reads lines of three fields: digest in hex, count, bytes in hex; the message is the bytes repeated that many
// times. Lines that begin with # and empty lines are passed over. Throws std::runtime_error when the file
// cannot be read or a line is not of this form.
std::vector<Vector> ReadVectors(const std::string& path);

} // namespace helpers
