// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "hash/Blake2bStream.h"

#include <cstddef>
#include <cstdint>
#include <string>

// BLAKE2b (RFC 7693) of a file: sequential, without a key, with a digest of 1 to 64 bytes.
class CCrypto_Blake2 {
  public:
    // The log is not taken over: a new engine has none. See SetDebugLog.
    explicit CCrypto_Blake2(std::wstring* pWstrDebugLog);
    CCrypto_Blake2(const CCrypto_Blake2&) = delete;
    CCrypto_Blake2& operator=(const CCrypto_Blake2&) = delete;

    // The text that collects warnings, owned by the caller; null to collect none.
    void SetDebugLog(std::wstring* pWstrDebugLog) { debugLog_ = pWstrDebugLog; }

    // Loads the salt, as CCrypto_Salt does.
    unsigned int SetSalt_FromFile(const wchar_t* path, EnumSaltType placement);

    // Starts a digest of this many bytes. False when it is 0 or above 64.
    bool Blake2_Initialize(unsigned char digestLength);

    // Feeds bytes. A block is compressed only when more follows it.
    void Blake2_Update(const unsigned char* bytes, std::uint64_t count);

    // Finishes the digest and writes its first `length` bytes, at most 64. A length below that of the digest
    // writes nothing and leaves a warning in the debug log. False when the digest was finished before.
    bool Blake2_Final(unsigned char* digest, unsigned char length);

    // Overwrites memory with zeros, by a call that compilers cannot remove.
    void Blake2_SecureZeroMemory(void* memory, std::uint64_t size);

    // Writes the digest of salt and file. False when a pointer is null, the digest length is 0 or above 64,
    // or the file cannot be opened. Capacity and key are not used: every digest is without a key.
    bool GetFromFile(const wchar_t* path, unsigned char* digest, int capacity, unsigned char digestLength,
                     const void* key, unsigned char keyLength);

    // The same as lower-case hex digits and a zero.
    bool GetFromFileAsString(const wchar_t* path, char* text, unsigned int capacity,
                             unsigned char digestLength, const void* key, unsigned char keyLength);

  private:
    // Before the first Blake2_Initialize the chaining value is zero and the digest has no bytes.
    struct Stream : fyrn::hash::Blake2bStream {
        Stream() : Blake2bStream(0) { state_ = {}; }
    };

    Stream stream_;
    CCrypto_Salt salt_;
    std::wstring* debugLog_ = nullptr;
};
