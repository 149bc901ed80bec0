// SPDX-License-Identifier: MIT
// Makes a copy of the program that finds no memory of one size, which FYRN_REFUSED_BYTES names.
#include "tests/helpers/FailingNew.h"

#include <cstdlib>

namespace {

std::size_t RefusedBytes() {
    const char* const text = std::getenv("FYRN_REFUSED_BYTES");
    return text == nullptr ? 0 : std::strtoull(text, nullptr, 10);
}

const helpers::FailingNew refusing = helpers::FailingNew::OfSize(RefusedBytes());

} // namespace
