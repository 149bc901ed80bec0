// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Sha.h"

#include <cstddef>
#include <cstdint>
#include <string>

// SHAKE128 and SHAKE256 (FIPS 202) of a file, and a third function that the standard does not have:
// SHAKE-512, the sponge of SHA3-512 with the padding of SHAKE. Never salted.
class CCrypto_Shake {
  public:
    // The function, as its rate in bytes.
    enum EnumShakeModeBufferLen : std::uint32_t {
        ShakeBufferLen_128 = 168,
        ShakeBufferLen_256 = 136,
        ShakeBufferLen_512 = 72,
    };

    explicit CCrypto_Shake(std::wstring* pWstrDebugLog); // the log is not used
    ~CCrypto_Shake() { FreeBlockBuffer(); }
    CCrypto_Shake(const CCrypto_Shake&) = delete;
    CCrypto_Shake& operator=(const CCrypto_Shake&) = delete;

    // Writes `count` bytes of output for the file. False when a pointer is null, the mode's rate is not 1 to
    // 200, or the file cannot be opened.
    bool Shake_GetFromFile(const wchar_t* path, unsigned char* output, std::uint64_t count,
                           EnumShakeModeBufferLen mode);

    // The same as lower-case hex text of at most 1023 characters, the most that a caller's text is taken to
    // hold: its stated capacity is not looked at. False also for a count of 2^31 or more.
    bool Shake_GetFromFileAsString(const wchar_t* path, std::uint64_t count, char* text,
                                   unsigned int capacity, EnumShakeModeBufferLen mode);

  private:
    void FreeBlockBuffer();
    void Reset(EnumShakeModeBufferLen mode);
    void PermuteFullBlock();
    void FinishAbsorbing();
    bool Shake_Absorb(const unsigned char* bytes, std::uint64_t count);
    bool Shake_Squeeze(unsigned char* output, std::uint64_t count);

    friend struct ShakePeer; // tests that feed pieces of any length

    unsigned char* blockBuffer_ = nullptr; // `rate_` bytes, owned; null before the first file
    std::uint8_t rate_ = 0;
    std::uint8_t position_ = 0; // bytes waiting in the block buffer, 0..rate_-1
    std::uint64_t state_[25] = {};
    CCrypto_Sha sha_;
    std::wstring* pWstrDebugLog_ = nullptr; // takes the warnings of guarded copies
};
