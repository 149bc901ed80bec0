// SPDX-License-Identifier: MIT
// SHA-1 and SHA-2 as FIPS 180-4 describes them, step by step.
#pragma once

#include "tests/helpers/Bytes.h"

#include <array>
#include <cstdint>
#include <span>

namespace reference {

using Sha1State = std::array<std::uint32_t, 5>;
using Sha256State = std::array<std::uint32_t, 8>;
using Sha512State = std::array<std::uint64_t, 8>;

// Sections 6.1.2, 6.2.2 and 6.4.2 for one block of 64, 64 or 128 bytes.
void Sha1Compress(Sha1State& state, const std::uint8_t* block);
void Sha256Compress(Sha256State& state, const std::uint8_t* block);
void Sha512Compress(Sha512State& state, const std::uint8_t* block);

helpers::Bytes Sha1(std::span<const std::uint8_t> message);
helpers::Bytes Sha224(std::span<const std::uint8_t> message);
helpers::Bytes Sha256(std::span<const std::uint8_t> message);
helpers::Bytes Sha384(std::span<const std::uint8_t> message);
helpers::Bytes Sha512(std::span<const std::uint8_t> message);
helpers::Bytes Sha512_224(std::span<const std::uint8_t> message);
helpers::Bytes Sha512_256(std::span<const std::uint8_t> message);

// The digest of SHA-1 and SHA-256 with a length field that stands for `statedBytes` instead of the
// message's own length: what an engine gives whose count of blocks has wrapped.
helpers::Bytes Sha1WithLength(std::span<const std::uint8_t> message, std::uint64_t statedBytes);
helpers::Bytes Sha256WithLength(std::span<const std::uint8_t> message, std::uint64_t statedBytes);

// The digest of SHA-512 with a length field that stands for this number of bits.
helpers::Bytes Sha512WithLength(std::span<const std::uint8_t> message, std::uint64_t highBits,
                                std::uint64_t lowBits);

} // namespace reference
