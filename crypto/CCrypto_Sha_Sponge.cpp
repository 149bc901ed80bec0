// SPDX-License-Identifier: MIT
#include "crypto/CCrypto_Sha_Sponge.h"

#include "crypto/CCrypto_Sha.h"

#include <cstring>

namespace sha {

void CopyStateBytes(unsigned char* bytes, const std::uint64_t state[25], std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<unsigned char>(state[i / 8] >> 8 * (i % 8));
}

void PaddedSponge::Absorb(const unsigned char* bytes, std::size_t count) {
    CCrypto_Sha::Keccak_AbsorbBlock(state_, bytes, rate_ / 8, count / rate_);
    rest_ = count % rate_;
    std::memcpy(buffer_, bytes + count - rest_, rest_);
}

void PaddedSponge::Pad() {
    buffer_[rest_] = padding_;
    buffer_[rate_ - 1] |= 0x80;
    CCrypto_Sha::Keccak_AbsorbBlock(state_, buffer_, rate_ / 8);
    rest_ = 0;
}

} // namespace sha
