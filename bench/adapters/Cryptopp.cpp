// SPDX-License-Identifier: MIT
#define CRYPTOPP_ENABLE_NAMESPACE_WEAK 1
#include "bench/adapters/Adapter.h"

#include <cryptopp/blake2.h>
#include <cryptopp/crc.h>
#include <cryptopp/keccak.h>
#include <cryptopp/md4.h>
#include <cryptopp/md5.h>
#include <cryptopp/sha.h>
#include <cryptopp/sha3.h>
#include <cryptopp/shake.h>
#include <cryptopp/tiger.h>
#include <cryptopp/whrlpool.h>

#include <map>
#include <memory>
#include <string>

namespace {

using Hash = std::unique_ptr<CryptoPP::HashTransformation>;

template <class Type>
Hash Make() {
    return std::make_unique<Type>();
}

const std::map<std::string, Hash (*)()> algorithms = {
    {"blake2b", Make<CryptoPP::BLAKE2b>},
    {"crc32", Make<CryptoPP::CRC32>},
    {"keccak-224", Make<CryptoPP::Keccak_224>},
    {"keccak-256", Make<CryptoPP::Keccak_256>},
    {"keccak-384", Make<CryptoPP::Keccak_384>},
    {"keccak-512", Make<CryptoPP::Keccak_512>},
    {"md4", Make<CryptoPP::Weak::MD4>},
    {"md5", Make<CryptoPP::Weak::MD5>},
    {"sha1", Make<CryptoPP::SHA1>},
    {"sha256", Make<CryptoPP::SHA256>},
    {"sha384", Make<CryptoPP::SHA384>},
    {"sha512", Make<CryptoPP::SHA512>},
    {"sha3-224", Make<CryptoPP::SHA3_224>},
    {"sha3-256", Make<CryptoPP::SHA3_256>},
    {"sha3-384", Make<CryptoPP::SHA3_384>},
    {"sha3-512", Make<CryptoPP::SHA3_512>},
    {"shake128", Make<CryptoPP::SHAKE128>},
    {"shake256", Make<CryptoPP::SHAKE256>},
    {"tiger", Make<CryptoPP::Tiger>},
    {"whirlpool", Make<CryptoPP::Whirlpool>},
};

} // namespace

// usage: adapter_cryptopp ALGORITHM FILE
int main(int argc, char* argv[]) {
    if (argc != 3 || algorithms.find(argv[1]) == algorithms.end())
        return 2;
    const Hash hash = algorithms.find(argv[1])->second();
    if (!adapter::FeedFile(
            argv[2], [&hash](const std::uint8_t* bytes, std::size_t count) { hash->Update(bytes, count); }))
        return 1;
    std::vector<std::uint8_t> digest(hash->DigestSize());
    hash->Final(digest.data());
    adapter::PrintHex(digest.data(), digest.size());
    return 0;
}
