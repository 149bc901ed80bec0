// SPDX-License-Identifier: MIT
#include "app/HashTable.h"

namespace {

// The engines' operations in the one form that the table needs.

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

template <auto engine>
CCrypto_Salt& SaltOf(RunContext& context) {
    return context.*engine;
}

constexpr bool always = true;
constexpr bool onSuccess = false;

// KECCAK rows run on the engine of the SHA rows without asking for the salt: deliberately, they are salted
// exactly when a SHA row is selected, too.
constexpr auto crcSalt = SaltOf<&RunContext::crc>;
constexpr auto md4Salt = SaltOf<&RunContext::md4>;
constexpr auto md5Salt = SaltOf<&RunContext::md5>;

constexpr std::uint32_t Bit(std::size_t row) {
    return std::uint32_t{1} << row % 32;
}

} // namespace

const std::array<HashRow, hashRowCount> hashTable = {{
    {L"BLAKE2-128", nullptr, always, nullptr},
    {L"BLAKE2-160", nullptr, always, nullptr},
    {L"BLAKE2-224", nullptr, always, nullptr},
    {L"BLAKE2-256", nullptr, always, nullptr},
    {L"BLAKE2-384", nullptr, always, nullptr},
    {L"BLAKE2-512", nullptr, always, nullptr},
    {L"CRC-16", Crc<&CCrypto_Crc::Crc16_GetFromFileAsString>, always, crcSalt},
    {L"CRC-32", Crc<&CCrypto_Crc::Crc32_GetFromFileAsString>, always, crcSalt},
    {L"CRC-64", Crc<&CCrypto_Crc::Crc64_GetFromFileAsString>, always, crcSalt},
    {L"KECCAK-224", nullptr, onSuccess, nullptr},
    {L"KECCAK-256", nullptr, onSuccess, nullptr},
    {L"KECCAK-384", nullptr, onSuccess, nullptr},
    {L"KECCAK-512", nullptr, onSuccess, nullptr},
    {L"MD4", Md4, always, md4Salt},
    {L"MD5", Md5, always, md5Salt},
    {L"MD6-128", nullptr, always, nullptr},
    {L"MD6-160", nullptr, always, nullptr},
    {L"MD6-192", nullptr, always, nullptr},
    {L"MD6-224", nullptr, always, nullptr},
    {L"MD6-256", nullptr, always, nullptr},
    {L"MD6-384", nullptr, always, nullptr},
    {L"MD6-512", nullptr, always, nullptr},
    {L"SHA1", nullptr, onSuccess, nullptr},
    {L"SHA2-256", nullptr, onSuccess, nullptr},
    {L"SHA2-384", nullptr, onSuccess, nullptr},
    {L"SHA2-512", nullptr, onSuccess, nullptr},
    {L"SHA3-224", nullptr, onSuccess, nullptr},
    {L"SHA3-256", nullptr, onSuccess, nullptr},
    {L"SHA3-384", nullptr, onSuccess, nullptr},
    {L"SHA3-512", nullptr, onSuccess, nullptr},
    {L"SHAKE-128", nullptr, onSuccess, nullptr},
    {L"SHAKE-256", nullptr, onSuccess, nullptr},
    {L"SHAKE-512", nullptr, onSuccess, nullptr},
    {L"SKEIN-256", nullptr, onSuccess, nullptr},
    {L"SKEIN-512", nullptr, onSuccess, nullptr},
    {L"SKEIN-1024", nullptr, onSuccess, nullptr},
    {L"TIGER1-128", nullptr, onSuccess, nullptr},
    {L"TIGER1-160", nullptr, onSuccess, nullptr},
    {L"TIGER1-192", nullptr, onSuccess, nullptr},
    {L"TIGER2-128", nullptr, onSuccess, nullptr},
    {L"TIGER2-160", nullptr, onSuccess, nullptr},
    {L"TIGER2-192", nullptr, onSuccess, nullptr},
    {L"WHIRLPOOL", nullptr, onSuccess, nullptr},
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
