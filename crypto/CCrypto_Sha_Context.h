// SPDX-License-Identifier: MIT
// SHA-1 and SHA-2 (FIPS 180-4) of a message that arrives in pieces: one update and one finaliser for the
// four functions, which differ in what the structures below say.
#pragma once

#include "crypto/SecureWipe.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>

namespace sha {

// Clears the stack below the caller, where a compression has left words of the message: 128 bytes for every
// 4 of `count`, far more than a compression uses. Never inlined, so that its frame lies where the
// compression's was.
template <unsigned int count>
__attribute__((noinline, no_sanitize("address"))) void BurnStack() {
    unsigned char area[count / 4 * 128];
    SecureWipe(area, sizeof area);
}

struct Sha1 {
    using Word = std::uint32_t;
    // 32 bits, a deliberate quirk: from 2^32 blocks (256 GiB) on the count wraps, and the length that is
    // hashed at the end with it. Digests of such files have always been these.
    using BlockCount = std::uint32_t;
    static constexpr Word initialState[] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
    static constexpr std::size_t digestSize = 20;
    static constexpr unsigned int burnCount = 104;
    static void Compress(Word* state, const unsigned char* blocks, std::size_t count) {
        fyrn::kernels::Kernels().sha1(state, blocks, count);
    }
};

struct Sha256 {
    using Word = std::uint32_t;
    using BlockCount = std::uint32_t; // wraps as in SHA-1
    static constexpr Word initialState[] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                            0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    static constexpr std::size_t digestSize = 32;
    static constexpr unsigned int burnCount = 328;
    static void Compress(Word* state, const unsigned char* blocks, std::size_t count) {
        fyrn::kernels::Kernels().sha256(state, blocks, count);
    }
};

struct Sha512 {
    using Word = std::uint64_t;
    using BlockCount = std::uint64_t;
    static constexpr Word initialState[] = {0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                            0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f,
                                            0x1f83d9abfb41bd6b, 0x5be0cd19137e2179};
    static constexpr std::size_t digestSize = 64;
    static constexpr unsigned int burnCount = 768;
    static void Compress(Word* state, const unsigned char* blocks, std::size_t count) {
        fyrn::kernels::Kernels().sha512(state, blocks, count);
    }
};

// SHA-512 with other initial values, cut to six words.
struct Sha384 : Sha512 {
    static constexpr Word initialState[] = {0xcbbb9d5dc1059ed8, 0x629a292a367cd507, 0x9159015a3070dd17,
                                            0x152fecd8f70e5939, 0x67332667ffc00b31, 0x8eb44a8768581511,
                                            0xdb0c2e0d64f98fa7, 0x47b5481dbefa4fa4};
    static constexpr std::size_t digestSize = 48;
};

template <class Function>
class Context {
  public:
    // Starts a message.
    void Reset();

    // Absorbs bytes. Null absorbs nothing, but compresses a full block buffer.
    void Update(const unsigned char* bytes, std::uint64_t count);

    // Pads the message, appends its length and writes the digest.
    void Finalize(unsigned char digest[Function::digestSize]);

  private:
    using Word = typename Function::Word;
    static constexpr std::size_t blockSize = 16 * sizeof(Word);
    static constexpr std::size_t lengthSize = 2 * sizeof(Word); // of the length in bits that ends the padding

    void CompressBlocks(const unsigned char* blocks, std::uint64_t count);
    void CompressFullBuffer();
    void PadBuffer(std::size_t size);
    void StoreMessageLength(std::uint64_t blocks, std::size_t fill);

    friend struct ContextPeer; // tests that start with other counts

    Word state_[std::size(Function::initialState)] = {};
    typename Function::BlockCount compressed_ = 0; // blocks
    unsigned char buffer_[blockSize] = {};
    std::size_t fill_ = 0; // bytes in the buffer, 0..blockSize
};

template <class Function>
void Context<Function>::Reset() {
    std::copy(std::begin(Function::initialState), std::end(Function::initialState), state_);
    compressed_ = 0;
    fill_ = 0;
}

template <class Function>
void Context<Function>::CompressBlocks(const unsigned char* blocks, std::uint64_t count) {
    Function::Compress(state_, blocks, static_cast<std::size_t>(count));
    compressed_ += static_cast<typename Function::BlockCount>(count);
    BurnStack<Function::burnCount>();
}

template <class Function>
void Context<Function>::CompressFullBuffer() {
    if (fill_ != blockSize)
        return;
    CompressBlocks(buffer_, 1);
    fill_ = 0;
}

template <class Function>
void Context<Function>::Update(const unsigned char* bytes, std::uint64_t count) {
    CompressFullBuffer();
    if (bytes == nullptr)
        return;
    if (fill_ != 0) {
        const auto taken = static_cast<std::size_t>(std::min<std::uint64_t>(count, blockSize - fill_));
        std::memcpy(buffer_ + fill_, bytes, taken);
        fill_ += taken;
        CompressFullBuffer();
        bytes += taken;
        count -= taken;
        if (count == 0)
            return;
    }
    const std::uint64_t whole = count / blockSize;
    CompressBlocks(bytes, whole);
    fill_ = static_cast<std::size_t>(count % blockSize);
    std::memcpy(buffer_, bytes + whole * blockSize, fill_);
}

// Fills the buffer with zeros up to `size` bytes.
template <class Function>
void Context<Function>::PadBuffer(std::size_t size) {
    std::memset(buffer_ + fill_, 0, size - fill_);
    fill_ = size;
}

// The length is not counted as data arrives: it follows from the count of blocks, and wraps with it.
template <class Function>
void Context<Function>::StoreMessageLength(std::uint64_t blocks, std::size_t fill) {
    const std::uint64_t low = (blocks * blockSize + fill) * 8;
    fyrn::kernels::StoreBig(buffer_ + blockSize - 8, low);
    if constexpr (lengthSize == 16)
        fyrn::kernels::StoreBig(buffer_ + blockSize - 16, blocks >> 54); // 2^10 bits to a block
}

template <class Function>
void Context<Function>::Finalize(unsigned char digest[Function::digestSize]) {
    CompressFullBuffer();
    const std::uint64_t messageBlocks = compressed_;
    const std::size_t messageFill = fill_;
    buffer_[fill_++] = 0x80;
    if (fill_ > blockSize - lengthSize) {
        PadBuffer(blockSize);
        CompressFullBuffer();
    }
    PadBuffer(blockSize - lengthSize);
    StoreMessageLength(messageBlocks, messageFill);
    fill_ = blockSize;
    CompressFullBuffer();
    for (std::size_t i = 0; i < std::size(state_); ++i)
        fyrn::kernels::StoreBig(buffer_ + sizeof(Word) * i, state_[i]);
    std::memcpy(digest, buffer_, Function::digestSize);
}

} // namespace sha
