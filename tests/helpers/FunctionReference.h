// SPDX-License-Identifier: MIT
// The published function of every row of the library's table, from the references alone.
#pragma once

#include "tests/helpers/Bytes.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace helpers {

// The digest of a message, `digestSize` bytes long, of the function of this canonical name ("SHA2-256"). Throws
// std::invalid_argument when there is no reference: a new function needs one in tests/reference and its line here.
Bytes FunctionReference(std::string_view name, std::span<const std::uint8_t> message, std::size_t digestSize);

} // namespace helpers
