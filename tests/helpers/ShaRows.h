// SPDX-License-Identifier: MIT
// The functions of the SHA and SHAKE engines in rows, for tests that hold for each of them.
#pragma once

#include "crypto/CCrypto_Sha.h"
#include "crypto/CCrypto_Shake.h"
#include "tests/helpers/Bytes.h"

#include <span>
#include <string>
#include <string_view>

namespace helpers {

struct ShaRow {
    const char* name;
    std::size_t digestSize;
    std::size_t readBufferSize;
    std::size_t rate;     // of the sponge; 0 for SHA-1 and SHA-2
    std::uint8_t padding; // of the sponge
    bool (*getFromFile)(CCrypto_Sha& engine, const wchar_t* path, unsigned char* digest);
    bool (*getFromFileAsString)(CCrypto_Sha& engine, const wchar_t* path, char* text);
    Bytes (*reference)(std::span<const std::uint8_t> message); // without a salt
};

// SHA-1, SHA-2, SHA-3 and KECCAK.
std::span<const ShaRow> ShaRows();

struct ShakeRow {
    const char* name;
    CCrypto_Shake::EnumShakeModeBufferLen mode; // the rate
    std::size_t digestSize;
};

std::span<const ShakeRow> ShakeRows();

// The text that a row gives for a file, "failed" when the operation returned false.
std::string ShaText(const ShaRow& row, CCrypto_Sha& engine, const wchar_t* path);
std::string ShakeText(const ShakeRow& row, CCrypto_Shake& engine, const wchar_t* path);

// The reference's digest of a message as text.
std::string ExpectedText(const ShaRow& row, std::span<const std::uint8_t> message);
std::string ExpectedText(const ShakeRow& row, std::span<const std::uint8_t> message);

} // namespace helpers
