// SPDX-License-Identifier: MIT
#pragma once

#include "hash/KeccakStream.h"

#include <cstddef>
#include <cstdint>
#include <optional>
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
    ~CCrypto_Shake() { WipeBlock(); }
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

    // Go on with the sponge of the last file: take in bytes, or pad the message and write output. False, and
    // nothing else, before the first file.
    bool Shake_Absorb(const unsigned char* bytes, std::uint64_t count);
    bool Shake_Squeeze(unsigned char* output, std::uint64_t count);

  private:
    // A sponge of any rate up to the state's size. A departure that outputs depend on: of a block whose rate is
    // no multiple of 8, only the whole words enter the state.
    class Sponge : public fyrn::hash::KeccakStream {
      public:
        explicit Sponge(std::size_t rate) : KeccakStream(rate, shake, 0) {}
        void Update(const unsigned char* bytes, std::size_t count);
        void CompressAlone(const unsigned char* blocks, std::size_t count);
        void WipeBlock();
    };

    void WipeBlock();

    std::optional<Sponge> sponge_; // of the last file
};
