// SPDX-License-Identifier: MIT
#include "hash/FunctionTable.h"

#include "hash/Blake2bStream.h"
#include "hash/Blake3Stream.h"
#include "hash/BlockAlgorithms.h"
#include "hash/BlockStream.h"
#include "hash/CrcStream.h"
#include "hash/KeccakStream.h"
#include "hash/LegacySums.h"
#include "hash/Md6Tree.h"
#include "hash/SkeinStream.h"
#include "hash/XxhStream.h"

#include <algorithm>
#include <cstdint>

namespace fyrn::hash {
namespace {

// A function whose digest has one size.
template <class Stream>
constexpr fyrn_function Row(const char* name, const char* tag, const char* aliases) {
    constexpr std::size_t size = Stream::digestSize;
    return {name, tag, aliases, size, Stream::blockSize, size, size, &streamType<Stream>};
}

template <class Algorithm>
constexpr auto BlockRow = Row<BlockStream<Algorithm>>;

constexpr StreamType blake2bType = MakeStreamType<Blake2bStream>(
    [](void* memory, std::size_t digestSize) { new (memory) Blake2bStream(digestSize); });

// BLAKE2b; a row stands for one usual length, and takes any other.
constexpr fyrn_function Blake2bRow(std::size_t bits, const char* name, const char* tag, const char* aliases) {
    return {name,        tag, aliases, bits / 8, Blake2bStream::blockSize, 1, Blake2bStream::maxDigestSize,
            &blake2bType};
}

constexpr StreamType blake3Type = MakeStreamType<Blake3Stream>(
    [](void* memory, std::size_t digestSize) { new (memory) Blake3Stream(digestSize); });

template <std::size_t rate, std::uint8_t padding>
constexpr StreamType keccakType = MakeStreamType<KeccakStream>([](void* memory, std::size_t digestSize) {
    new (memory) KeccakStream(rate, padding, digestSize);
});

// What twice the digest leaves of the state is the rate.
template <std::size_t bits, std::uint8_t padding>
constexpr fyrn_function KeccakRow(const char* name, const char* tag, const char* aliases) {
    constexpr std::size_t size = bits / 8, rate = KeccakStream::stateSize - 2 * size;
    return {name, tag, aliases, size, rate, size, size, &keccakType<rate, padding>};
}

// A digest of twice the strength's bits, or of any other length. SHAKE-512, which the standard does not have, is the
// sponge of SHA3-512.
template <std::size_t rate>
constexpr fyrn_function ShakeRow(std::size_t bits, const char* name, const char* tag, const char* aliases) {
    return {name, tag, aliases, bits / 8, rate, 1, SIZE_MAX, &keccakType<rate, KeccakStream::shake>};
}

template <unsigned int bits>
constexpr StreamType md6Type = MakeStreamType<Md6Tree>([](void* memory, std::size_t) {
    new (memory) Md6Tree(bits);
});

template <unsigned int bits>
constexpr fyrn_function Md6Row(const char* name) {
    return {name, name, "", bits / 8, Md6Tree::blockSize, bits / 8, bits / 8, &md6Type<bits>};
}

constexpr auto keccak = KeccakStream::keccak;
constexpr auto sha3 = KeccakStream::sha3;

using Crc16Usb = CatalogueCrcStream<std::uint16_t, 0xa001>;
using Crc32 = CatalogueCrcStream<std::uint32_t, 0xedb88320>;
using Crc32c = CatalogueCrcStream<std::uint32_t, 0x82f63b78>;
using Crc64Iso = CatalogueCrcStream<std::uint64_t, 0xd800000000000000>;
using Crc64Nvme = CatalogueCrcStream<std::uint64_t, 0x9a6c9329ac4bc9b5>;
using Crc64Xz = CatalogueCrcStream<std::uint64_t, 0xc96c5795d7870f42>;

constexpr fyrn_function functions[] = {
    Blake2bRow(128, "BLAKE2-128", "BLAKE2b-128", ""),
    Blake2bRow(160, "BLAKE2-160", "BLAKE2b-160", ""),
    Blake2bRow(224, "BLAKE2-224", "BLAKE2b-224", ""),
    Blake2bRow(256, "BLAKE2-256", "BLAKE2b-256", ""),
    Blake2bRow(384, "BLAKE2-384", "BLAKE2b-384", ""),
    Blake2bRow(512, "BLAKE2-512", "BLAKE2b", "blake2b-512 blake2"),
    Row<Crc16Usb>("CRC-16", "CRC16-USB", ""),
    Row<Crc32>("CRC-32", "CRC32", "crc32b"),
    Row<Crc64Iso>("CRC-64", "CRC64-ISO", "crc64-go-iso"),
    KeccakRow<224, keccak>("KECCAK-224", "KECCAK-224", ""),
    KeccakRow<256, keccak>("KECCAK-256", "KECCAK-256", ""),
    KeccakRow<384, keccak>("KECCAK-384", "KECCAK-384", ""),
    KeccakRow<512, keccak>("KECCAK-512", "KECCAK-512", ""),
    BlockRow<Md4>("MD4", "MD4", ""),
    BlockRow<Md5>("MD5", "MD5", ""),
    Md6Row<128>("MD6-128"),
    Md6Row<160>("MD6-160"),
    Md6Row<192>("MD6-192"),
    Md6Row<224>("MD6-224"),
    Md6Row<256>("MD6-256"),
    Md6Row<384>("MD6-384"),
    Md6Row<512>("MD6-512"),
    BlockRow<Sha1>("SHA1", "SHA1", ""),
    BlockRow<Sha256>("SHA2-256", "SHA256", ""),
    BlockRow<Sha384>("SHA2-384", "SHA384", ""),
    BlockRow<Sha512>("SHA2-512", "SHA512", ""),
    KeccakRow<224, sha3>("SHA3-224", "SHA3-224", ""),
    KeccakRow<256, sha3>("SHA3-256", "SHA3-256", ""),
    KeccakRow<384, sha3>("SHA3-384", "SHA3-384", ""),
    KeccakRow<512, sha3>("SHA3-512", "SHA3-512", ""),
    ShakeRow<168>(128, "SHAKE-128", "SHAKE128", ""),
    ShakeRow<136>(256, "SHAKE-256", "SHAKE256", ""),
    ShakeRow<72>(512, "SHAKE-512", "SHAKE-512", ""),
    Row<SkeinStream<4>>("SKEIN-256", "SKEIN-256", ""),
    Row<SkeinStream<8>>("SKEIN-512", "SKEIN-512", ""),
    Row<SkeinStream<16>>("SKEIN-1024", "SKEIN-1024", ""),
    BlockRow<Tiger1<16>>("TIGER1-128", "TIGER1-128", "tiger-128"),
    BlockRow<Tiger1<20>>("TIGER1-160", "TIGER1-160", "tiger-160"),
    BlockRow<Tiger1<24>>("TIGER1-192", "TIGER1-192", "tiger-192 tiger"),
    BlockRow<Tiger2<16>>("TIGER2-128", "TIGER2-128", ""),
    BlockRow<Tiger2<20>>("TIGER2-160", "TIGER2-160", ""),
    BlockRow<Tiger2<24>>("TIGER2-192", "TIGER2-192", "tiger2"),
    BlockRow<Whirlpool>("WHIRLPOOL", "WHIRLPOOL", ""),
    BlockRow<Sha224>("SHA2-224", "SHA224", ""),
    BlockRow<Sha512_224>("SHA2-512/224", "SHA512/224", "512224"),
    BlockRow<Sha512_256>("SHA2-512/256", "SHA512/256", "512256"),
    Row<Crc32c>("CRC-32C", "CRC32C", "castagnoli"),
    Row<Crc64Nvme>("CRC-64/NVME", "CRC64-NVME", ""),
    Row<Crc64Xz>("CRC-64/XZ", "CRC64-XZ", ""),
    Row<CksumStream>("CKSUM", "CRC", "posix-cksum"),
    Row<BsdSumStream>("SUM-BSD", "BSD", ""),
    Row<SysvSumStream>("SUM-SYSV", "SYSV", ""),
    BlockRow<Sm3>("SM3", "SM3", ""),
    BlockRow<Ripemd160>("RIPEMD-160", "RMD160", "ripemd"),
    {"BLAKE3", "BLAKE3", "b3", 32, Blake3Stream::blockSize, 1, SIZE_MAX, &blake3Type},
    Row<XxhStream<Xxh32>>("XXH32", "XXH32", ""),
    Row<XxhStream<Xxh64>>("XXH64", "XXH64", ""),
    Row<XxhStream<Xxh3>>("XXH3-64", "XXH3", ""),
    Row<XxhStream<Xxh128>>("XXH3-128", "XXH128", ""),
};

// The next character of a name that counts, in lower case; 0 at the end.
char NextCharacter(std::string_view& name) {
    while (!name.empty()) {
        const char c = name.front();
        name.remove_prefix(1);
        if (c >= 'A' && c <= 'Z')
            return static_cast<char>(c - 'A' + 'a');
        if (c != '-' && c != '_' && c != '/' && c != ' ')
            return c;
    }
    return '\0';
}

bool SameName(std::string_view a, std::string_view b) {
    for (;;) {
        const char next = NextCharacter(a);
        if (next != NextCharacter(b))
            return false;
        if (next == '\0')
            return true;
    }
}

bool IsAmong(std::string_view aliases, std::string_view name) {
    while (!aliases.empty()) {
        const std::string_view alias = aliases.substr(0, aliases.find(' '));
        if (SameName(alias, name))
            return true;
        aliases.remove_prefix(std::min(aliases.size(), alias.size() + 1));
    }
    return false;
}

} // namespace

std::span<const fyrn_function> AllFunctions() {
    return functions;
}

const fyrn_function* FindFunction(std::string_view name) {
    for (const fyrn_function& row : functions)
        if (SameName(row.name, name) || SameName(row.tag, name) || IsAmong(row.aliases, name))
            return &row;
    return nullptr;
}

} // namespace fyrn::hash
