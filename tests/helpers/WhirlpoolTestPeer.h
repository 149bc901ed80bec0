// SPDX-License-Identifier: MIT
// What tests see and set of the Whirlpool engine.
#pragma once

#include "crypto/CCrypto_Whirlpool.h"
#include "tests/helpers/Bytes.h"

#include <algorithm>
#include <array>
#include <cstdint>

class WhirlpoolTestPeer {
  public:
    using Length = std::array<std::uint8_t, 32>;

    static void PresetLength(CCrypto_Whirlpool& engine, const Length& length) {
        std::copy(length.begin(), length.end(), engine.bitLength_);
    }
    static Length BitLength(const CCrypto_Whirlpool& engine) { return std::to_array(engine.bitLength_); }

    static void CountBits(CCrypto_Whirlpool& engine, int length) { engine.CountBits(length); }

    // As if `count` bits had been added before, the highest of `bits` first.
    static void PresetBits(CCrypto_Whirlpool& engine, std::uint8_t bits, int count) {
        engine.buffer_[0] = bits;
        engine.bufferBits_ = count;
        engine.bitLength_[31] = static_cast<std::uint8_t>(count);
    }
    static helpers::Bytes Digest(const CCrypto_Whirlpool& engine) {
        return {engine.digest_, engine.digest_ + 64};
    }
};
