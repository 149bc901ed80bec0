// SPDX-License-Identifier: MIT
#include "tests/reference/LittleEndianMessage.h"

namespace reference {

helpers::Bytes PadLittleEndian(std::span<const std::uint8_t> message, std::uint64_t statedBytes) {
    helpers::Bytes padded(message.begin(), message.end());
    padded.push_back(0x80);
    while (padded.size() % 64 != 56)
        padded.push_back(0);
    const std::uint64_t bits = statedBytes * 8;
    for (unsigned int shift = 0; shift < 64; shift += 8)
        padded.push_back(static_cast<std::uint8_t>(bits >> shift));
    return padded;
}

std::uint32_t LittleEndianWord(const std::uint8_t* block, unsigned int i) {
    std::uint32_t word = 0;
    for (unsigned int byte = 4; byte-- > 0;)
        word = word << 8 | block[4 * i + byte];
    return word;
}

helpers::Bytes LittleEndianDigest(const State32x4& state) {
    helpers::Bytes digest;
    for (const std::uint32_t word : state)
        for (unsigned int shift = 0; shift < 32; shift += 8)
            digest.push_back(static_cast<std::uint8_t>(word >> shift));
    return digest;
}

} // namespace reference
