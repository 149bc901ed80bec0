// SPDX-License-Identifier: MIT
#pragma once

#include "hash/kernels/Blake3.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// BLAKE3 without a key, with a digest of any length. The message is a binary tree of chunks of 1,024 bytes, whose nodes
// are compressed side by side.
class Blake3Stream {
    static constexpr std::size_t chunkSize = kernels::blake3ChunkSize;

  public:
    static constexpr std::size_t blockSize = kernels::blake3BlockSize;

    explicit Blake3Stream(std::size_t digestSize) : digestSize_(digestSize) { Reset(); }

    // Begins a message.
    void Reset();

    // Takes in bytes of the message. The last block always stays back.
    void Update(const std::uint8_t* bytes, std::size_t count);

    // Parts of a message that are hashed apart (fyrn_hash_part), and taken in by their values.
    static constexpr std::size_t partSize = 512 * chunkSize;
    void Part(std::uint64_t number, const std::uint8_t* bytes, std::uint8_t* value) const;
    void AddPart(const std::uint8_t* value);

    // Finishes the tree and writes the digest. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    static const char* Kernel();

  private:
    static constexpr int maxDepth = 54; // of a tree of 2^64 bytes
    static constexpr std::size_t valueSize = kernels::blake3ValueSize;

    void BeginChunk();
    std::size_t ChunkFill() const { return blocks_ * blockSize + fill_; }
    std::uint32_t ChunkFlags() const;
    void AddToChunk(const std::uint8_t* bytes, std::size_t count);
    void FinishChunk();
    std::size_t AddSubtree(const std::uint8_t* bytes, std::size_t count);
    void JoinEqualSubtrees();
    void Push(const std::uint8_t* value, std::uint64_t chunks);

    std::size_t digestSize_;
    std::uint64_t chunks_;    // finished so far
    std::uint32_t value_[16]; // the first 8 words: the current chunk's chaining value
    std::size_t blocks_;      // of the current chunk, compressed
    std::size_t fill_;        // bytes in the buffer, 0 to blockSize
    int depth_;               // of the stack
    std::uint8_t buffer_[blockSize];
    std::uint8_t
        stack_[maxDepth]
              [valueSize]; // roots of subtrees that wait for their right neighbour, the largest first
};

} // namespace fyrn::hash
