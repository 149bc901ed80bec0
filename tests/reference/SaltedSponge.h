// SPDX-License-Identifier: MIT
// The digest of salts and a file that follow each other in one sponge, each padded by itself.
#pragma once

#include "tests/helpers/Bytes.h"

#include <vector>

namespace reference {

// The first `length` bytes of the state after the messages. Where a message leaves a shorter rest than the
// one before it, its last block is not filled with zeros but with what stands there in the last block
// before it.
helpers::Bytes SaltedSponge(std::size_t rate, std::uint8_t padding,
                            const std::vector<helpers::Bytes>& messages, std::size_t length);

} // namespace reference
