// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "crypto/ShaStream.h"

#include <cstddef>
#include <cstdint>
#include <string>

// SHA-1 and SHA-2 (FIPS 180-4), SHA-3 (FIPS 202) and Keccak as it was submitted to the SHA-3 competition,
// of a file. Every operation returns false when the file cannot be opened or a pointer is null, with one
// exception: text forms of SHA-1 and SHA-2 hash first, and a null text then only means that nothing is
// written.
class CCrypto_Sha : public CCrypto_Salt {
  public:
    explicit CCrypto_Sha(std::wstring* pWstrDebugLog); // the log is not used

    // Write the digest of salt and file: 20, 32, 48 and 64 bytes.
    bool GetSha1_FromFile(const wchar_t* path, unsigned char digest[]);
    bool GetSha2_256_FromFile(const wchar_t* path, unsigned char digest[]);
    bool GetSha2_384_FromFile(const wchar_t* path, unsigned char digest[]);
    bool GetSha2_512_FromFile(const wchar_t* path, unsigned char digest[]);

    // The same as lower-case hex digits, two for each byte, and a zero.
    bool GetSha1_FromFileAsString(const wchar_t* path, char text[]);
    bool GetSha2_256_FromFileAsString(const wchar_t* path, char text[]);
    bool GetSha2_384_FromFileAsString(const wchar_t* path, char text[]);
    bool GetSha2_512_FromFileAsString(const wchar_t* path, char text[]);

    // Writes the digest of `bits` (224, 256, 384 or 512, else false) / 8 bytes: Keccak or SHA-3. Salts are
    // messages of their own, each with its padding, before and after that of the file.
    bool GetSha3_FromFile(const wchar_t* path, unsigned short bits, unsigned char* digest, bool isKeccak);

    // The same as hex text, cut to whole bytes that fit `capacity` characters.
    bool GetSha3_FromFileAsString(const wchar_t* path, unsigned short bits, char* text, unsigned int capacity,
                                  bool isKeccak);

    // Adds `lanes` little-endian words of 64 bits to the first lanes of the state and permutes it by
    // Keccak-f[1600]; so for each of `blocks` blocks. With 0 lanes this only permutes, and `input` may be
    // null.
    static void Keccak_AbsorbBlock(std::uint64_t state[25], const unsigned char* input, std::size_t lanes,
                                   std::size_t blocks = 1);

  private:
    sha::Sha1Stream sha1_{};
    sha::Sha256Stream sha256_{};
    sha::Sha384Stream sha384_{};
    sha::Sha512Stream sha512_{};
};
