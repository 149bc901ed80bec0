// SPDX-License-Identifier: MIT
// Digests computed by libgcrypt, to compare with ours.
#pragma once

#include "fyrn/fyrn.h"
#include "tests/helpers/Bytes.h"

#include <gcrypt.h>

#include <cstddef>
#include <optional>
#include <span>

namespace oracle {

// libgcrypt's number of the function, by its name or tag; none where libgcrypt does not have it.
std::optional<int> AlgorithmOf(const fyrn_function* function);

// libgcrypt's digest of a message, of the function's usual length. Throws std::invalid_argument where it does not have
// the function.
helpers::Bytes Digest(const fyrn_function* function, std::span<const std::uint8_t> message);

// The digest of a message. `algorithm` is one of libgcrypt's GCRY_MD_ numbers; `length` is the number of bytes
// wanted of a function of variable length, 0 for the others. Throws std::runtime_error when the library does
// not have the function.
helpers::Bytes Digest(int algorithm, std::span<const std::uint8_t> message, std::size_t length = 0);

} // namespace oracle
