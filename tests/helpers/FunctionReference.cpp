// SPDX-License-Identifier: MIT
#include "tests/helpers/FunctionReference.h"

#include "tests/reference/Blake2b.h"
#include "tests/reference/Blake3.h"
#include "tests/reference/Crc.h"
#include "tests/reference/Keccak.h"
#include "tests/reference/LegacySums.h"
#include "tests/reference/Md4.h"
#include "tests/reference/Md5.h"
#include "tests/reference/Md6.h"
#include "tests/reference/Ripemd160.h"
#include "tests/reference/Sha.h"
#include "tests/reference/Skein.h"
#include "tests/reference/Sm3.h"
#include "tests/reference/Tiger.h"
#include "tests/reference/Whirlpool.h"
#include "tests/reference/Xxh.h"

#include <map>
#include <stdexcept>
#include <string>

namespace helpers {
namespace {

using Message = std::span<const std::uint8_t>;
using Reference = Bytes(Message message, std::size_t digestSize);

Bytes Blake2b(Message message, std::size_t digestSize) {
    return reference::Blake2b(message, digestSize);
}

Bytes HighestByteFirst(std::uint64_t value, std::size_t count) {
    Bytes bytes(count);
    for (std::size_t i = count; i > 0; --i, value >>= 8)
        bytes[i - 1] = static_cast<std::uint8_t>(value);
    return bytes;
}

template <std::uint64_t polynomial>
Bytes Crc(Message message, std::size_t digestSize) {
    const auto width = static_cast<unsigned int>(8 * digestSize);
    return HighestByteFirst(reference::Crc(width, polynomial, ~std::uint64_t{0} >> (64 - width), message),
                            digestSize);
}

template <auto sum>
Bytes Sum(Message message, std::size_t digestSize) {
    return HighestByteFirst(sum(message), digestSize);
}

// Whose rate is what twice the digest leaves of the state.
template <std::uint8_t suffix>
Bytes Keccak(Message message, std::size_t digestSize) {
    return reference::Sponge(200 - 2 * digestSize, suffix, message, digestSize);
}

template <std::size_t rate>
Bytes Shake(Message message, std::size_t digestSize) {
    return reference::Sponge(rate, 0x1f, message, digestSize);
}

Bytes Md6(Message message, std::size_t digestSize) {
    return reference::Md6({message.begin(), message.end()}, 8 * std::uint64_t{message.size()},
                          {.digestBits = static_cast<int>(8 * digestSize)});
}

// With a digest as long as the state.
Bytes Skein(Message message, std::size_t digestSize) {
    return reference::Skein(message, digestSize, digestSize);
}

template <std::uint8_t padding>
Bytes Tiger(Message message, std::size_t digestSize) {
    Bytes digest = reference::Tiger(message, padding, message.size());
    digest.resize(digestSize);
    return digest;
}

// Of functions whose digest has one size.
template <auto function>
Bytes Plain(Message message, std::size_t) {
    return function(message);
}

const std::map<std::string_view, Reference*> references = {
    {"BLAKE2-128", Blake2b},
    {"BLAKE2-160", Blake2b},
    {"BLAKE2-224", Blake2b},
    {"BLAKE2-256", Blake2b},
    {"BLAKE2-384", Blake2b},
    {"BLAKE2-512", Blake2b},
    {"BLAKE3", reference::Blake3},
    {"CKSUM", Sum<reference::Cksum>},
    {"CRC-16", Crc<0xa001>},
    {"CRC-32", Crc<0xedb88320>},
    {"CRC-32C", Crc<0x82f63b78>},
    {"CRC-64", Crc<0xd800000000000000>},
    {"CRC-64/NVME", Crc<0x9a6c9329ac4bc9b5>},
    {"CRC-64/XZ", Crc<0xc96c5795d7870f42>},
    {"KECCAK-224", Keccak<0x01>},
    {"KECCAK-256", Keccak<0x01>},
    {"KECCAK-384", Keccak<0x01>},
    {"KECCAK-512", Keccak<0x01>},
    {"MD4", Plain<reference::Md4>},
    {"MD5", Plain<reference::Md5>},
    {"MD6-128", Md6},
    {"MD6-160", Md6},
    {"MD6-192", Md6},
    {"MD6-224", Md6},
    {"MD6-256", Md6},
    {"MD6-384", Md6},
    {"MD6-512", Md6},
    {"RIPEMD-160", Plain<reference::Ripemd160>},
    {"SHA1", Plain<reference::Sha1>},
    {"SHA2-224", Plain<reference::Sha224>},
    {"SHA2-256", Plain<reference::Sha256>},
    {"SHA2-384", Plain<reference::Sha384>},
    {"SHA2-512", Plain<reference::Sha512>},
    {"SHA2-512/224", Plain<reference::Sha512_224>},
    {"SHA2-512/256", Plain<reference::Sha512_256>},
    {"SHA3-224", Keccak<0x06>},
    {"SHA3-256", Keccak<0x06>},
    {"SHA3-384", Keccak<0x06>},
    {"SHA3-512", Keccak<0x06>},
    {"SHAKE-128", Shake<168>},
    {"SHAKE-256", Shake<136>},
    {"SHAKE-512", Shake<72>},
    {"SKEIN-256", Skein},
    {"SKEIN-512", Skein},
    {"SKEIN-1024", Skein},
    {"SM3", Plain<reference::Sm3>},
    {"SUM-BSD", Sum<reference::BsdSum>},
    {"SUM-SYSV", Sum<reference::SysvSum>},
    {"TIGER1-128", Tiger<reference::tiger1Padding>},
    {"TIGER1-160", Tiger<reference::tiger1Padding>},
    {"TIGER1-192", Tiger<reference::tiger1Padding>},
    {"TIGER2-128", Tiger<reference::tiger2Padding>},
    {"TIGER2-160", Tiger<reference::tiger2Padding>},
    {"TIGER2-192", Tiger<reference::tiger2Padding>},
    {"WHIRLPOOL", Plain<reference::Whirlpool>},
    {"XXH32", Plain<reference::Xxh32>},
    {"XXH64", Plain<reference::Xxh64>},
    {"XXH3-64", Plain<reference::Xxh3>},
    {"XXH3-128", Plain<reference::Xxh128>},
};

} // namespace

Bytes FunctionReference(std::string_view name, std::span<const std::uint8_t> message,
                        std::size_t digestSize) {
    const auto found = references.find(name);
    if (found == references.end())
        throw std::invalid_argument("no reference for " + std::string(name) +
                                    ": tests/helpers/FunctionReference.cpp wants one");
    return found->second(message, digestSize);
}

} // namespace helpers
