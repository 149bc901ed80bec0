// SPDX-License-Identifier: MIT
// Digests computed by libgcrypt, to compare with ours.
#pragma once

#include "tests/helpers/Bytes.h"

#include <gcrypt.h>

#include <cstddef>
#include <span>

namespace oracle {

// The digest of a message. `algorithm` is one of libgcrypt's GCRY_MD_ numbers; `length` is the number of bytes
// wanted of a function of variable length, 0 for the others. Throws std::runtime_error when the library does
// not have the function.
helpers::Bytes Digest(int algorithm, std::span<const std::uint8_t> message, std::size_t length = 0);

} // namespace oracle
