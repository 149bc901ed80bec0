// SPDX-License-Identifier: MIT
#include "app/HashTable.h"

namespace {

// The engines' operations in the one form that the table needs.

template <unsigned char bytes>
bool Blake2(RunContext& context, const wchar_t* path) {
    return context.blake2.GetFromFileAsString(path, context.hashText, sizeof context.hashText, bytes, nullptr,
                                              0);
}

template <auto operation>
bool Crc(RunContext& context, const wchar_t* path) {
    return (context.crc.*operation)(path, context.hashText);
}

bool Md4(RunContext& context, const wchar_t* path) {
    return context.md4.GetFromFileAsString(path, context.hashText);
}

bool Md5(RunContext& context, const wchar_t* path) {
    return context.md5.GetFromFileAsString(path, context.hashText);
}

template <unsigned short bits>
bool Md6(RunContext& context, const wchar_t* path) {
    return context.md6.GetFromFileAsString(path, context.hashText, sizeof context.hashText, bits, 0);
}

template <auto operation>
bool Sha(RunContext& context, const wchar_t* path) {
    return (context.sha.*operation)(path, context.hashText);
}

template <unsigned short bits, bool isKeccak>
bool Sponge(RunContext& context, const wchar_t* path) {
    constexpr unsigned int capacity = bits / 4 + 1;
    return context.sha.GetSha3_FromFileAsString(path, bits, context.hashText, capacity, isKeccak);
}

template <unsigned int bytes, auto mode>
bool Shake(RunContext& context, const wchar_t* path) {
    return context.shake.Shake_GetFromFileAsString(path, bytes, context.hashText, sizeof context.hashText,
                                                   mode);
}

template <unsigned short bits>
bool Skein(RunContext& context, const wchar_t* path) {
    return context.skein.GetFromFileAsString(path, context.hashText, sizeof context.hashText, bits);
}

template <unsigned short bits, bool isTiger2>
bool Tiger(RunContext& context, const wchar_t* path) {
    return context.tiger.GetFromFileAsString(path, context.hashText, sizeof context.hashText, bits, isTiger2,
                                             0);
}

bool Whirlpool(RunContext& context, const wchar_t* path) {
    return context.whirlpool.GetFromFileAsString(path, context.hashText);
}

template <auto engine>
CCrypto_Salt& SaltOf(RunContext& context) {
    return context.*engine;
}

constexpr bool always = true;
constexpr bool onSuccess = false;

// KECCAK rows run on the engine of the SHA rows without asking for the salt: deliberately, they are salted
// exactly when a SHA row is selected, too.
constexpr auto unsalted = nullptr;
constexpr auto crcSalt = SaltOf<&RunContext::crc>;
constexpr auto md4Salt = SaltOf<&RunContext::md4>;
constexpr auto md5Salt = SaltOf<&RunContext::md5>;
constexpr auto md6Salt = SaltOf<&RunContext::md6>;
constexpr auto shaSalt = SaltOf<&RunContext::sha>;
constexpr auto skeinSalt = SaltOf<&RunContext::skein>;
constexpr auto tigerSalt = SaltOf<&RunContext::tiger>;
constexpr auto whirlpoolSalt = SaltOf<&RunContext::whirlpool>;

constexpr std::uint32_t Bit(std::size_t row) {
    return std::uint32_t{1} << row % 32;
}

} // namespace

const std::array<HashRow, hashRowCount> hashTable = {{
    {L"BLAKE2-128", Blake2<16>, always, unsalted},
    {L"BLAKE2-160", Blake2<20>, always, unsalted},
    {L"BLAKE2-224", Blake2<28>, always, unsalted},
    {L"BLAKE2-256", Blake2<32>, always, unsalted},
    {L"BLAKE2-384", Blake2<48>, always, unsalted},
    {L"BLAKE2-512", Blake2<64>, always, unsalted},
    {L"CRC-16", Crc<&CCrypto_Crc::Crc16_GetFromFileAsString>, always, crcSalt},
    {L"CRC-32", Crc<&CCrypto_Crc::Crc32_GetFromFileAsString>, always, crcSalt},
    {L"CRC-64", Crc<&CCrypto_Crc::Crc64_GetFromFileAsString>, always, crcSalt},
    {L"KECCAK-224", Sponge<224, true>, onSuccess, unsalted},
    {L"KECCAK-256", Sponge<256, true>, onSuccess, unsalted},
    {L"KECCAK-384", Sponge<384, true>, onSuccess, unsalted},
    {L"KECCAK-512", Sponge<512, true>, onSuccess, unsalted},
    {L"MD4", Md4, always, md4Salt},
    {L"MD5", Md5, always, md5Salt},
    {L"MD6-128", Md6<128>, always, md6Salt},
    {L"MD6-160", Md6<160>, always, md6Salt},
    {L"MD6-192", Md6<192>, always, md6Salt},
    {L"MD6-224", Md6<224>, always, md6Salt},
    {L"MD6-256", Md6<256>, always, md6Salt},
    {L"MD6-384", Md6<384>, always, md6Salt},
    {L"MD6-512", Md6<512>, always, md6Salt},
    {L"SHA1", Sha<&CCrypto_Sha::GetSha1_FromFileAsString>, onSuccess, shaSalt},
    {L"SHA2-256", Sha<&CCrypto_Sha::GetSha2_256_FromFileAsString>, onSuccess, shaSalt},
    {L"SHA2-384", Sha<&CCrypto_Sha::GetSha2_384_FromFileAsString>, onSuccess, shaSalt},
    {L"SHA2-512", Sha<&CCrypto_Sha::GetSha2_512_FromFileAsString>, onSuccess, shaSalt},
    {L"SHA3-224", Sponge<224, false>, onSuccess, shaSalt},
    {L"SHA3-256", Sponge<256, false>, onSuccess, shaSalt},
    {L"SHA3-384", Sponge<384, false>, onSuccess, shaSalt},
    {L"SHA3-512", Sponge<512, false>, onSuccess, shaSalt},
    {L"SHAKE-128", Shake<16, CCrypto_Shake::ShakeBufferLen_128>, onSuccess, unsalted},
    {L"SHAKE-256", Shake<32, CCrypto_Shake::ShakeBufferLen_256>, onSuccess, unsalted},
    {L"SHAKE-512", Shake<64, CCrypto_Shake::ShakeBufferLen_512>, onSuccess, unsalted},
    {L"SKEIN-256", Skein<256>, onSuccess, skeinSalt},
    {L"SKEIN-512", Skein<512>, onSuccess, skeinSalt},
    {L"SKEIN-1024", Skein<1024>, onSuccess, skeinSalt},
    {L"TIGER1-128", Tiger<128, false>, onSuccess, tigerSalt},
    {L"TIGER1-160", Tiger<160, false>, onSuccess, tigerSalt},
    {L"TIGER1-192", Tiger<192, false>, onSuccess, tigerSalt},
    {L"TIGER2-128", Tiger<128, true>, onSuccess, tigerSalt},
    {L"TIGER2-160", Tiger<160, true>, onSuccess, tigerSalt},
    {L"TIGER2-192", Tiger<192, true>, onSuccess, tigerSalt},
    {L"WHIRLPOOL", Whirlpool, onSuccess, whirlpoolSalt},
}};

void SelectRow(RunContext& context, std::size_t row) {
    context.selection[row / 32] |= Bit(row);
}

void SelectAllRows(RunContext& context) {
    for (std::uint32_t& word : context.selection)
        word = ~std::uint32_t{0};
}

bool IsSelected(const RunContext& context, std::size_t row) {
    return (context.selection[row / 32] & Bit(row)) != 0;
}

unsigned char CountSelectedHashes(const RunContext& context) {
    unsigned char count = 0;
    for (std::size_t row = 0; row < hashRowCount; ++row)
        if (IsSelected(context, row))
            ++count;
    return count;
}
