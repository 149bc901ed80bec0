// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "hash/SkeinStream.h"
#include "platform/File.h"

#include <cstddef>
#include <cstdint>
#include <string>

// Skein 1.3 of a file: simple hashing with a state of 256, 512 or 1024 bits and a digest of that size.
//
// The operations on contexts return false when an argument is null.
class CCrypto_Skein : public CCrypto_Salt {
  public:
    // One message on its way, by size of the state in words.
    template <std::size_t words>
    struct Context {
        std::uint16_t hashBitLength;
        fyrn::hash::SkeinStream<words> stream;
    };
    using SKEIN_256_CONTEXT = Context<4>;
    using SKEIN_512_CONTEXT = Context<8>;
    using SKEIN_1024_CONTEXT = Context<16>;

    explicit CCrypto_Skein(std::wstring* pWstrDebugLog); // the log is not used

    // Starts a message.
    bool Skein_256_Init(SKEIN_256_CONTEXT* context);
    bool Skein_512_Init(SKEIN_512_CONTEXT* context);
    bool Skein_1024_Init(SKEIN_1024_CONTEXT* context);

    // Absorbs whole blocks, each of which adds `added` bytes to the position.
    void Skein_256_ProcessBlock(SKEIN_256_CONTEXT* context, const unsigned char* blocks, std::size_t count,
                                std::size_t added);
    void Skein_512_ProcessBlock(SKEIN_512_CONTEXT* context, const unsigned char* blocks, std::size_t count,
                                std::size_t added);
    void Skein_1024_ProcessBlock(SKEIN_1024_CONTEXT* context, const unsigned char* blocks, std::size_t count,
                                 std::size_t added);

    // Feeds bytes. The last block is always kept back.
    bool Skein_256_Update(SKEIN_256_CONTEXT* context, const unsigned char* bytes, unsigned int count);
    bool Skein_512_Update(SKEIN_512_CONTEXT* context, const unsigned char* bytes, unsigned int count);
    bool Skein_1024_Update(SKEIN_1024_CONTEXT* context, const unsigned char* bytes, unsigned int count);

    // Finishes the message and writes the digest: 32, 64 or 128 bytes.
    bool Skein_256_Final(SKEIN_256_CONTEXT* context, unsigned char* digest);
    bool Skein_512_Final(SKEIN_512_CONTEXT* context, unsigned char* digest);
    bool Skein_1024_Final(SKEIN_1024_CONTEXT* context, unsigned char* digest);

    // Writes the digest of salt and file. False when a pointer is null, the state size is none of the three,
    // or the file cannot be opened. The capacity is not used.
    bool GetFromFile(const wchar_t* path, unsigned char* digest, int capacity, unsigned short stateBits);

    // The same as lower-case hex digits and a zero.
    bool GetFromFileAsString(const wchar_t* path, char* text, unsigned int capacity,
                             unsigned short stateBits);

  private:
    bool HashOpenFile(platform::InputFile& file, unsigned char* digest, unsigned short stateBits);
};
