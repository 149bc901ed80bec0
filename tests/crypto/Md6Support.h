// SPDX-License-Identifier: MIT
// What the tests of MD6 share.
#pragma once

#include "crypto/CCrypto_Md6.h"
#include "tests/helpers/Bytes.h"
#include "tests/helpers/DigestText.h"
#include "tests/reference/Md6.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace md6_tests {

using helpers::Bytes;
using Message = std::span<const std::uint8_t>;

inline constexpr unsigned short digestSizes[] = {128, 160, 192, 224, 256, 384, 512};

// The engine's text for a path or a message.
template <class File>
std::string Text(CCrypto_Md6& engine, const File& file, unsigned short d) {
    return helpers::DigestText(file, [&](const wchar_t* path, char* text) {
        return engine.GetFromFileAsString(path, text, 1024, d, 0);
    });
}

inline std::string Expected(Message message, unsigned short d, const Bytes& key = {}) {
    const Bytes bytes(message.begin(), message.end());
    return helpers::ToHex(reference::Md6(bytes, 8 * bytes.size(), {.digestBits = d, .key = key}));
}

// What a salt does to the key: its first 64 bytes.
inline Bytes KeyOf(const Bytes& salt) {
    return Bytes(salt.begin(),
                 salt.begin() + static_cast<std::ptrdiff_t>(std::min<std::size_t>(64, salt.size())));
}

// The digest after Md6_Final.
inline std::string Digest(const CCrypto_Md6& engine, unsigned short d) {
    return helpers::ToHex(Message(engine.HashValue(), (d + 7u) / 8));
}

} // namespace md6_tests
