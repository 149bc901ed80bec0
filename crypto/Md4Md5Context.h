// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

// What MD4 (RFC 1320) and MD5 (RFC 1321) have in common: all but the compression of a block. Words are stored
// low-order byte first, as in both documents.
struct Md4Md5Context {
    static constexpr unsigned int blockSize = 64;

    // Compresses `count` blocks into the state.
    using Compress = void(std::uint32_t state[4], const std::uint8_t* blocks, std::size_t count);

    unsigned char buffer[blockSize]; // bytes not yet compressed
    unsigned char digest[16];        // result of the last Finish
    std::uint32_t bitCountLow;       // message length in bits, modulo 2^64
    std::uint32_t bitCountHigh;
    std::uint32_t state[4]; // A, B, C, D

    // Zeroes everything.
    void Reset();

    // Sets the chaining value that both functions begin with.
    void SetInitialState();

    // Takes in any number of bytes.
    void Absorb(const unsigned char* bytes, unsigned int count, Compress* compress);

    // Pads, takes in the message length and stores the digest. The rest is not wiped.
    void Finish(Compress* compress);

  private:
    // Number of bytes in the block buffer, 0 to 63.
    unsigned int Buffered() const { return bitCountLow >> 3 & (blockSize - 1); }
    void CountBytes(unsigned int count);
};
