// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"

#include <cstdint>
#include <string>

// Whirlpool (ISO/IEC 10118-3, the final version) of a file.
class CCrypto_Whirlpool : public CCrypto_Salt {
  public:
    explicit CCrypto_Whirlpool(std::wstring* pWstrDebugLog); // the log is not used

    // Starts a message.
    void Initialize();

    // Absorbs bytes, `length` of them.
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
    friend class WhirlpoolTestPeer;

    void CountBits(int length);
    void AddWholeBytes(const unsigned char* bytes, int length);
    void AddShiftedByte(unsigned int byte, int shift);

    unsigned char bitLength_[32]; // the number of bits hashed so far, most significant byte first
    unsigned char buffer_[64];    // zero from the last bit held to the end of that byte
    unsigned char digest_[64];
    std::int32_t bufferBits_;     // bits held, 0 to 511
    std::int32_t bufferPosition_; // the byte that is being filled
    std::uint64_t hash_[8];
};
