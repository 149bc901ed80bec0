// SPDX-License-Identifier: MIT
#include "tests/helpers/ShaRows.h"

#include "tests/helpers/DigestText.h"
#include "tests/reference/Keccak.h"
#include "tests/reference/Sha.h"

namespace helpers {
namespace {

constexpr std::uint8_t sha3Padding = 0x06;
constexpr std::uint8_t keccakPadding = 0x01;
constexpr std::uint8_t shakePadding = 0x1f;

// SHA3-n or KECCAK-n.
template <unsigned short bits, bool isKeccak>
constexpr ShaRow SpongeRow(const char* name) {
    constexpr std::size_t rate = 200 - bits / 4;
    constexpr std::uint8_t padding = isKeccak ? keccakPadding : sha3Padding;
    return {name,
            bits / 8,
            2'036'736,
            rate,
            padding,
            [](CCrypto_Sha& engine, const wchar_t* path, unsigned char* digest) {
                return engine.GetSha3_FromFile(path, bits, digest, isKeccak);
            },
            [](CCrypto_Sha& engine, const wchar_t* path, char* text) {
                return engine.GetSha3_FromFileAsString(path, bits, text, bits / 4 + 1, isKeccak);
            },
            [](std::span<const std::uint8_t> message) {
                return reference::Sponge(rate, padding, message, bits / 8);
            }};
}

template <bool (CCrypto_Sha::*getFromFile)(const wchar_t*, unsigned char*),
          bool (CCrypto_Sha::*getFromFileAsString)(const wchar_t*, char*)>
constexpr ShaRow Row(const char* name, std::size_t digestSize,
                     Bytes (*reference)(std::span<const std::uint8_t>)) {
    return {name,
            digestSize,
            1'000'000,
            0,
            0,
            [](CCrypto_Sha& engine, const wchar_t* path, unsigned char* digest) {
                return (engine.*getFromFile)(path, digest);
            },
            [](CCrypto_Sha& engine, const wchar_t* path, char* text) {
                return (engine.*getFromFileAsString)(path, text);
            },
            reference};
}

constexpr ShaRow shaRows[] = {
    Row<&CCrypto_Sha::GetSha1_FromFile, &CCrypto_Sha::GetSha1_FromFileAsString>("SHA1", 20, reference::Sha1),
    Row<&CCrypto_Sha::GetSha2_256_FromFile, &CCrypto_Sha::GetSha2_256_FromFileAsString>("SHA2-256", 32,
                                                                                        reference::Sha256),
    Row<&CCrypto_Sha::GetSha2_384_FromFile, &CCrypto_Sha::GetSha2_384_FromFileAsString>("SHA2-384", 48,
                                                                                        reference::Sha384),
    Row<&CCrypto_Sha::GetSha2_512_FromFile, &CCrypto_Sha::GetSha2_512_FromFileAsString>("SHA2-512", 64,
                                                                                        reference::Sha512),
    SpongeRow<224, false>("SHA3-224"),
    SpongeRow<256, false>("SHA3-256"),
    SpongeRow<384, false>("SHA3-384"),
    SpongeRow<512, false>("SHA3-512"),
    SpongeRow<224, true>("KECCAK-224"),
    SpongeRow<256, true>("KECCAK-256"),
    SpongeRow<384, true>("KECCAK-384"),
    SpongeRow<512, true>("KECCAK-512"),
};

constexpr ShakeRow shakeRows[] = {
    {"SHAKE-128", CCrypto_Shake::ShakeBufferLen_128, 16},
    {"SHAKE-256", CCrypto_Shake::ShakeBufferLen_256, 32},
    {"SHAKE-512", CCrypto_Shake::ShakeBufferLen_512, 64},
};

} // namespace

std::span<const ShaRow> ShaRows() {
    return shaRows;
}

std::span<const ShakeRow> ShakeRows() {
    return shakeRows;
}

std::string ShaText(const ShaRow& row, CCrypto_Sha& engine, const wchar_t* path) {
    return DigestText(
        path, [&](const wchar_t* file, char* text) { return row.getFromFileAsString(engine, file, text); });
}

std::string ShakeText(const ShakeRow& row, CCrypto_Shake& engine, const wchar_t* path) {
    return DigestText(path, [&](const wchar_t* file, char* text) {
        return engine.Shake_GetFromFileAsString(file, row.digestSize, text, 1024, row.mode);
    });
}

std::string ExpectedText(const ShaRow& row, std::span<const std::uint8_t> message) {
    return ToHex(row.reference(message));
}

std::string ExpectedText(const ShakeRow& row, std::span<const std::uint8_t> message) {
    return ToHex(reference::Sponge(row.mode, shakePadding, message, row.digestSize));
}

} // namespace helpers
