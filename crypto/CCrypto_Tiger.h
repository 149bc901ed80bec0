// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"

#include <cstdint>
#include <string>

// Tiger (Anderson, Biham, "Tiger: a fast new hash function", 1996) of a file, padded as Tiger1 or Tiger2.
//
// A deliberate quirk: bytes that one call of Tiger_Transform left over are never counted in the message
// length when a later call completes their block. Without a salt no bytes are left over before the end, and
// the digest is the standard's; users' recorded salted digests depend on the shortfall.
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
    const std::uint64_t* State() const { return state_; }

    // Writes the first bits / 8 bytes of the digest of salt and file, with the padding of Tiger2 or Tiger1.
    // False when a pointer is null, bits is above 192 or the file cannot be opened.
    bool GetFromFile(const wchar_t* path, unsigned char* digest, unsigned int ignoredSize,
                     unsigned short bits, bool tiger2, unsigned char ignoredPasses);

    // The same as lower-case hex digits and a zero; `text` holds 1024 characters.
    bool GetFromFileAsString(const wchar_t* path, char* text, unsigned int ignoredSize, unsigned short bits,
                             bool tiger2, unsigned char ignoredPasses);

  private:
    static constexpr unsigned int blockSize = 64;

    void CopyDigest(unsigned char* digest, unsigned int count) const;

    bool tiger2_ = true;
    unsigned char buffer_[blockSize] = {};
    std::uint8_t buffered_ = 0;
    std::uint64_t state_[3] = {};
    std::uint64_t length_ = 0; // bytes counted
};
