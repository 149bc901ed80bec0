// SPDX-License-Identifier: MIT
#include "tests/helpers/RowModels.h"

#include "tests/reference/Blake2b.h"
#include "tests/reference/Crc.h"
#include "tests/reference/Keccak.h"
#include "tests/reference/Md4.h"
#include "tests/reference/Md5.h"
#include "tests/reference/Md6.h"
#include "tests/reference/Sha.h"
#include "tests/reference/Skein.h"
#include "tests/reference/Tiger.h"
#include "tests/reference/Whirlpool.h"

#include <stdexcept>

namespace helpers {
namespace {

using Message = std::span<const std::uint8_t>;

template <std::size_t bits>
Bytes Blake2(Message message) {
    return reference::Blake2b(message, bits / 8);
}

template <unsigned int width, std::uint64_t polynomial>
Bytes Crc(Message message) {
    constexpr std::uint64_t ones = ~std::uint64_t{0} >> (64 - width);
    const std::uint64_t crc = reference::Crc(width, polynomial, ones, message);
    Bytes digest;
    for (unsigned int shift = width; shift != 0; shift -= 8)
        digest.push_back(static_cast<std::uint8_t>(crc >> (shift - 8)));
    return digest;
}

template <std::size_t bits, std::uint8_t suffix>
Bytes Sponge(Message message) {
    return reference::Sponge(200 - bits / 4, suffix, message, bits / 8);
}

template <std::size_t rate, std::size_t bytes>
Bytes Shake(Message message) {
    return reference::Sponge(rate, 0x1f, message, bytes);
}

template <int bits>
Bytes Md6(Message message) {
    return reference::Md6({message.begin(), message.end()}, 8 * message.size(), {.digestBits = bits});
}

template <std::size_t bits>
Bytes Skein(Message message) {
    return reference::Skein(message, bits / 8, bits / 8);
}

template <std::size_t bits, std::uint8_t padding>
Bytes Tiger(Message message) {
    Bytes digest = reference::Tiger(message, padding, message.size());
    digest.resize(bits / 8);
    return digest;
}

constexpr std::uint8_t keccak = 0x01;
constexpr std::uint8_t sha3 = 0x06;
constexpr std::uint8_t tiger1 = reference::tiger1Padding;
constexpr std::uint8_t tiger2 = reference::tiger2Padding;

constexpr RowModel models[] = {
    {"BLAKE2-128", Blake2<128>},
    {"BLAKE2-160", Blake2<160>},
    {"BLAKE2-224", Blake2<224>},
    {"BLAKE2-256", Blake2<256>},
    {"BLAKE2-384", Blake2<384>},
    {"BLAKE2-512", Blake2<512>},
    {"CRC-16", Crc<16, 0xa001>},
    {"CRC-32", Crc<32, 0xedb88320>},
    {"CRC-64", Crc<64, 0xd800000000000000>},
    {"KECCAK-224", Sponge<224, keccak>},
    {"KECCAK-256", Sponge<256, keccak>},
    {"KECCAK-384", Sponge<384, keccak>},
    {"KECCAK-512", Sponge<512, keccak>},
    {"MD4", reference::Md4},
    {"MD5", reference::Md5},
    {"MD6-128", Md6<128>},
    {"MD6-160", Md6<160>},
    {"MD6-192", Md6<192>},
    {"MD6-224", Md6<224>},
    {"MD6-256", Md6<256>},
    {"MD6-384", Md6<384>},
    {"MD6-512", Md6<512>},
    {"SHA1", reference::Sha1},
    {"SHA2-256", reference::Sha256},
    {"SHA2-384", reference::Sha384},
    {"SHA2-512", reference::Sha512},
    {"SHA3-224", Sponge<224, sha3>},
    {"SHA3-256", Sponge<256, sha3>},
    {"SHA3-384", Sponge<384, sha3>},
    {"SHA3-512", Sponge<512, sha3>},
    {"SHAKE-128", Shake<168, 16>},
    {"SHAKE-256", Shake<136, 32>},
    {"SHAKE-512", Shake<72, 64>},
    {"SKEIN-256", Skein<256>},
    {"SKEIN-512", Skein<512>},
    {"SKEIN-1024", Skein<1024>},
    {"TIGER1-128", Tiger<128, tiger1>},
    {"TIGER1-160", Tiger<160, tiger1>},
    {"TIGER1-192", Tiger<192, tiger1>},
    {"TIGER2-128", Tiger<128, tiger2>},
    {"TIGER2-160", Tiger<160, tiger2>},
    {"TIGER2-192", Tiger<192, tiger2>},
    {"WHIRLPOOL", reference::Whirlpool},
};
static_assert(std::size(models) == 43);

} // namespace

std::span<const RowModel> RowModels() {
    return models;
}

const RowModel& RowModelOf(std::string_view name) {
    for (const RowModel& model : models)
        if (name == model.name)
            return model;
    throw std::out_of_range("no such row: " + std::string(name));
}

} // namespace helpers
