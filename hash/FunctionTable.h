// SPDX-License-Identifier: MIT
// The constant table of all hash functions: one row each. The library, the commands, tests and documents take names,
// sizes and streams from here.
#pragma once

#include "hash/StreamType.h"

#include <cstddef>
#include <span>
#include <string_view>

// A row; this is what fyrn/fyrn.h hands out.
struct fyrn_function {
    const char* name;    // canonical
    const char* tag;     // of a line `TAG (file) = digest`
    const char* aliases; // further names, separated by blanks
    std::size_t digestSize;
    std::size_t blockSize;
    std::size_t minDigestSize; // what fyrn_hash_new_sized takes
    std::size_t maxDigestSize;
    const fyrn::hash::StreamType* stream;
};

namespace fyrn::hash {

std::span<const fyrn_function> AllFunctions();

// The row with this name, tag or alias, null if there is none. Case, '-', '_', '/' and blanks do not count.
const fyrn_function* FindFunction(std::string_view name);

} // namespace fyrn::hash
