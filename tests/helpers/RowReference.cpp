// SPDX-License-Identifier: MIT
#include "tests/helpers/RowReference.h"

#include "tests/reference/Blake2b.h"
#include "tests/reference/Crc.h"
#include "tests/reference/Keccak.h"
#include "tests/reference/Md4.h"
#include "tests/reference/Md5.h"
#include "tests/reference/Md6.h"
#include "tests/reference/SaltedSponge.h"
#include "tests/reference/Sha.h"
#include "tests/reference/Skein.h"
#include "tests/reference/Tiger.h"
#include "tests/reference/Whirlpool.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>
#include <vector>

namespace helpers {

namespace {

// Salt, file and salt as they follow each other, and the salt that an engine holds even where it feeds none.
struct Input {
    std::vector<Bytes> parts;
    Bytes salt;

    Bytes Joined() const {
        Bytes joined;
        for (const Bytes& part : parts)
            joined.insert(joined.end(), part.begin(), part.end());
        return joined;
    }
};

Input SaltedInput(std::span<const std::uint8_t> message, const Bytes& salt, EnumSaltType placement) {
    Input input{{Bytes(message.begin(), message.end())}, salt};
    if (salt.empty())
        return input;
    if (placement == EnumSaltType::Before || placement == EnumSaltType::Both)
        input.parts.insert(input.parts.begin(), salt);
    if (placement == EnumSaltType::After || placement == EnumSaltType::Both)
        input.parts.push_back(salt);
    return input;
}

std::size_t NumberAfter(std::string_view row, std::size_t position) {
    std::size_t number = 0;
    const char* const end = row.data() + row.size();
    if (position > row.size() || std::from_chars(row.data() + position, end, number).ptr != end)
        throw std::invalid_argument("no row of the hash table");
    return number;
}

Bytes HighestByteFirst(std::uint64_t value, std::size_t count) {
    Bytes bytes(count);
    for (std::size_t i = count; i > 0; --i, value >>= 8)
        bytes[i - 1] = static_cast<std::uint8_t>(value);
    return bytes;
}

Bytes Crc(const Input& input, std::size_t bits) {
    const std::uint64_t polynomial = bits == 16 ? 0xa001 : bits == 32 ? 0xedb88320 : 0xd800000000000000;
    const std::uint64_t ones = ~std::uint64_t{0} >> (64 - bits);
    return HighestByteFirst(reference::Crc(static_cast<unsigned int>(bits), polynomial, ones, input.Joined()),
                            bits / 8);
}

Bytes Sponge(const Input& input, std::uint8_t padding, std::size_t bits) {
    return reference::SaltedSponge(200 - bits / 4, padding, input.parts, bits / 8);
}

Bytes Md6(const Input& input, std::size_t bits) {
    const Bytes message = input.Joined();
    const Bytes key(input.salt.begin(),
                    input.salt.begin() +
                        static_cast<std::ptrdiff_t>(std::min<std::size_t>(64, input.salt.size())));
    return reference::Md6(message, 8 * message.size(), {.digestBits = static_cast<int>(bits), .key = key});
}

Bytes Sha2(const Input& input, std::size_t bits) {
    return bits == 256   ? reference::Sha256(input.Joined())
           : bits == 384 ? reference::Sha384(input.Joined())
                         : reference::Sha512(input.Joined());
}

// The bytes that Tiger counts: those that waited when a part, or a piece of a long file, completed their block are
// not among them.
std::uint64_t TigerCount(const Input& input) {
    constexpr std::size_t piece = 1'048'576;
    std::uint64_t fed = 0;
    std::uint64_t lost = 0;
    for (const Bytes& part : input.parts)
        for (std::size_t begin = 0; begin < part.size(); begin += piece) {
            const std::uint64_t count = std::min(piece, part.size() - begin);
            if (fed % 64 + count >= 64)
                lost += fed % 64;
            fed += count;
        }
    return fed - lost;
}

Bytes Tiger(const Input& input, bool tiger2, std::size_t bits) {
    Bytes digest = reference::Tiger(
        input.Joined(), tiger2 ? reference::tiger2Padding : reference::tiger1Padding, TigerCount(input));
    digest.resize(bits / 8);
    return digest;
}

// SHAKE and BLAKE2 take no salt.
Bytes Shake(std::span<const std::uint8_t> message, std::size_t bits) {
    const std::size_t rate = bits == 128 ? 168 : bits == 256 ? 136 : 72;
    return reference::Sponge(rate, 0x1f, message, bits / 8);
}

Bytes Digest(std::string_view row, std::span<const std::uint8_t> message, const Input& input) {
    if (row.starts_with("BLAKE2-"))
        return reference::Blake2b(message, NumberAfter(row, 7) / 8);
    if (row.starts_with("CRC-"))
        return Crc(input, NumberAfter(row, 4));
    if (row.starts_with("KECCAK-"))
        return Sponge(input, 0x01, NumberAfter(row, 7));
    if (row == "MD4")
        return reference::Md4(input.Joined());
    if (row == "MD5")
        return reference::Md5(input.Joined());
    if (row.starts_with("MD6-"))
        return Md6(input, NumberAfter(row, 4));
    if (row == "SHA1")
        return reference::Sha1(input.Joined());
    if (row.starts_with("SHA2-"))
        return Sha2(input, NumberAfter(row, 5));
    if (row.starts_with("SHA3-"))
        return Sponge(input, 0x06, NumberAfter(row, 5));
    if (row.starts_with("SHAKE-"))
        return Shake(message, NumberAfter(row, 6));
    if (row.starts_with("SKEIN-"))
        return reference::Skein(input.Joined(), NumberAfter(row, 6) / 8, NumberAfter(row, 6) / 8);
    if (row.starts_with("TIGER"))
        return Tiger(input, row.starts_with("TIGER2-"), NumberAfter(row, 7));
    if (row == "WHIRLPOOL")
        return reference::Whirlpool(input.Joined());
    throw std::invalid_argument("no row of the hash table");
}

} // namespace

std::string RowReference(std::string_view row, std::span<const std::uint8_t> message, const Bytes& salt,
                         EnumSaltType placement) {
    return ToHex(Digest(row, message, SaltedInput(message, salt, placement)));
}

} // namespace helpers
