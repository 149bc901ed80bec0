// SPDX-License-Identifier: MIT
#pragma once

#include "hash/KernelName.h"
#include "hash/Md6Level.h"
#include "hash/kernels/KernelSelect.h"

#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

// MD6 (Rivest et al., "The MD6 hash function", 2008) with the mode parameter L = 64: always the full tree.
//
// The digest does not depend on the order in which the nodes of the tree are compressed, so every level collects up to
// eight nodes and compresses them together, when a further one begins. The last node of a level always stays back: only
// the data that goes on behind it tells that it is not the root.
class Md6Tree {
  public:
    static constexpr unsigned int maxDigestBits = 512;
    static constexpr std::size_t maxKeySize = 64; // bytes
    static constexpr std::size_t blockSize = Md6Level::nodeBytes;

    // A digest of 1 to maxDigestBits bits, with a key of up to maxKeySize bytes, which is not kept.
    explicit Md6Tree(unsigned int digestBits, const std::uint8_t* key = nullptr, std::size_t keySize = 0) {
        Begin(digestBits, key, keySize);
    }

    // Begins a message, with other parameters or with the same.
    void Begin(unsigned int digestBits, const std::uint8_t* key, std::size_t keySize);
    void Reset();

    // Take in message bytes, or bits, the most significant one of a byte first.
    void Update(const std::uint8_t* bytes, std::size_t count) { UpdateBits(bytes, std::uint64_t{count} * 8); }
    void UpdateBits(const std::uint8_t* bytes, std::uint64_t bitCount);

    // Parts of a message that are hashed apart (fyrn_hash_part), and taken in by their values.
    static constexpr std::size_t partSize = 1024 * blockSize;
    void Part(std::uint64_t number, const std::uint8_t* bytes, std::uint8_t* value) const;
    void AddPart(const std::uint8_t* value);

    // Finishes the tree and writes the digest of (digestBits + 7) / 8 bytes. Reset begins the next message.
    void Finish(std::uint8_t* digest);

    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().md6, kernels::Kernels().md6);
    }

  protected:
    static constexpr int highestLevel = 28;       // more than 2^64 bits fill; levels count from 1
    static constexpr std::size_t valueSize = 128; // bytes of a chaining value
    static constexpr std::uint32_t valueBits = 8 * valueSize;

    // Compresses the next `count` nodes of a level, of which the last ends in `padding` bits of it.
    void Compress(std::uint8_t* values, int ell, const std::uint8_t* nodes, std::uint32_t count, bool isRoot,
                  std::uint32_t padding) const {
        CompressFrom(levels_[ell].NextIndex(), values, ell, nodes, count, isRoot, padding);
    }

    // Appends chaining values to a level.
    void Append(int ell, const std::uint8_t* values, std::uint32_t count);

    // Compresses the first nodes that wait on a level, below the highest, and passes their values on to the next.
    void Flush(int ell, std::uint32_t count);

    // Flushes all levels that have another one above them at the end of the message. Returns the root's level.
    int FlushBelowRoot();

    // Cuts the digest from the root's value.
    void CopyDigest(std::uint8_t* digest, const std::uint8_t* root) const;

    Md6Level levels_[highestLevel + 1];
    int top_; // the highest level in use

  private:
    static constexpr int partHeight = 6;            // levels that a part makes one value of
    static constexpr std::uint32_t groupNodes = 64; // that are compressed together, 16 groups in a part
    static constexpr int groupHeight = 4;

    void CompressFrom(std::uint64_t index, std::uint8_t* values, int ell, const std::uint8_t* nodes,
                      std::uint32_t count, bool isRoot, std::uint32_t padding) const;
    void SubtreeValue(std::uint8_t* value, int ell, std::uint64_t index, const std::uint8_t* nodes,
                      std::uint32_t count) const;
    void PassOn(int ell, const std::uint8_t* nodes, std::uint32_t count, std::uint32_t padding);

    unsigned int digestBits_;
    unsigned int keySize_;
    int rounds_;
    std::uint64_t key_[8];
};

} // namespace fyrn::hash
