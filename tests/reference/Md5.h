// SPDX-License-Identifier: MIT
// MD5 as RFC 1321 describes it, step by step.
#pragma once

#include "tests/reference/LittleEndianMessage.h"

namespace reference {

// Step 4 for one block of 64 bytes.
void Md5Compress(State32x4& state, const std::uint8_t* block);

helpers::Bytes Md5(std::span<const std::uint8_t> message);

// The digest with a length field that stands for `statedBytes` instead of the message's own length.
helpers::Bytes Md5WithLength(std::span<const std::uint8_t> message, std::uint64_t statedBytes);

} // namespace reference
