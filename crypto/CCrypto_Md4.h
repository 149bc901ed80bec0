// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "hash/BlockAlgorithms.h"
#include "hash/BlockStream.h"

#include <cstddef>
#include <cstdint>
#include <string>

// MD4 (RFC 1320) of a file.
class CCrypto_Md4 : public CCrypto_Salt {
  public:
    explicit CCrypto_Md4(std::wstring* pWstrDebugLog); // the log is not used

    // Sets the message length to 0 and zeroes block buffer, digest and state. GetFromFile alone sets the initial state.
    void ResetContext();

    // Absorbs bytes.
    void DoBlock(const unsigned char* bytes, unsigned int count);

    // Compresses one block of 64 bytes into the state.
    void Transform(const unsigned char* block);

    // Pads, appends the length and stores the digest.
    void Finalize();

    // Writes the digest of salt and file, 16 bytes. False
    // when a pointer is null or the file cannot be opened.
    bool GetFromFile(const wchar_t* path, unsigned char digest[]);

    // The same as 32 lower-case hex digits and a zero.
    bool GetFromFileAsString(const wchar_t* path, char text[]);

  private:
    // A fault in the kernel is reported as Transform's, and the message goes on.
    struct Reporting : fyrn::hash::Md4 {
        static void Compress(std::uint32_t* state, const std::uint8_t* blocks, std::size_t count);
    };

    fyrn::hash::BlockStream<Reporting> stream_;
    unsigned char digest_[Reporting::digestSize]; // of the last Finalize
};
