// SPDX-License-Identifier: MIT
// The digest text that an engine's operation gives for a message, by way of a file.
#pragma once

#include "tests/helpers/ScratchFiles.h"

#include <cstdint>
#include <span>
#include <string>

namespace helpers {

// Calls operation(path, text), a ...AsString operation with its further arguments bound, and returns the text, of
// at most 1023 characters. "failed" when the operation returned false.
template <class Operation>
std::string DigestText(const wchar_t* path, Operation operation) {
    char text[1024] = "";
    return operation(path, text) ? text : "failed";
}

// The same for a file with this content.
template <class Operation>
std::string DigestText(std::span<const std::uint8_t> message, Operation operation) {
    static const ScratchFiles files;
    return DigestText(files.Write("message", message).c_str(), operation);
}

} // namespace helpers
