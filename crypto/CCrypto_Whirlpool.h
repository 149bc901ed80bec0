// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "crypto/WhirlpoolStream.h"

#include <string>

// Whirlpool (ISO/IEC 10118-3, the final version) of a file.
class CCrypto_Whirlpool : public CCrypto_Salt {
  public:
    explicit CCrypto_Whirlpool(std::wstring* pWstrDebugLog); // the log is not used

    // Starts a message.
    void Initialize();

    // Absorbs bytes, `length` of them. Calls of 268,435,456 bytes and more are miscounted (WhirlpoolStream.h).
    void AddDataBlock(const unsigned char* bytes, int length);

    // Pads, appends the length and stores the digest.
    void Finalize();

    // Compresses the block buffer into the state.
    void Transform();

    // Writes the digest of salt and file, 64 bytes. False
    // when a pointer is null or the file cannot be opened.
    bool GetFromFile(const wchar_t* path, unsigned char digest[]);

    // The same as 128 lower-case hex digits and a zero.
    bool GetFromFileAsString(const wchar_t* path, char text[]);

  private:
    WhirlpoolStream stream_;
    unsigned char digest_[WhirlpoolStream::digestSize];
};
