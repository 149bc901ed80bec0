// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "crypto/TigerStream.h"

#include <cstdint>
#include <string>

// Tiger (Anderson, Biham, "Tiger: a fast new hash function", 1996) of a file, padded as Tiger1 or Tiger2.
// With a salt, the length that is hashed falls short (TigerStream.h).
class CCrypto_Tiger : public CCrypto_Salt {
  public:
    explicit CCrypto_Tiger(std::wstring* pWstrDebugLog); // the log is not used

    // Begins a message.
    void Tiger_Initialize();

    // Takes message bytes.
    void Tiger_Transform(const unsigned char* data, std::uint64_t length);

    // Compresses one block of 64 bytes into the state.
    void Tiger_Compress(const unsigned char* block);

    // Pads, appends the length and leaves the result in the state.
    void Tiger_Finalize();

    // The words a, b and c.
    const std::uint64_t* State() { return stream_.State(); }

    // Writes the first bits / 8 bytes of the digest of salt and file, with the padding of Tiger2 or Tiger1.
    // False when a pointer is null, bits is above 192 or the file cannot be opened.
    bool GetFromFile(const wchar_t* path, unsigned char* digest, unsigned int ignoredSize,
                     unsigned short bits, bool tiger2, unsigned char ignoredPasses);

    // The same as lower-case hex digits and a zero; `text` holds 1024 characters.
    bool GetFromFileAsString(const wchar_t* path, char* text, unsigned int ignoredSize, unsigned short bits,
                             bool tiger2, unsigned char ignoredPasses);

  private:
    bool tiger2_ = true;
    TigerStream stream_{};
};
