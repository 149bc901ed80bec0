// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/Md6Result.h"
#include "hash/Md6Tree.h"

#include <cstddef>
#include <cstdint>

// MD6's tree as the members of CCrypto_Md6 see it: node by node, with the bytes of the hash value.
//
// The tree compresses nodes in batches, as its digest does not depend on their order. Process and CompressBlock, which
// look at single nodes, first bring it to the state of one that compresses each node as soon as the data goes on behind
// it. They also reach level 0, which no message does, and end a tree where no message could.
class Md6NodeTree : public fyrn::hash::Md6Tree {
  public:
    Md6NodeTree() : Md6Tree(maxDigestBits) {}

    // Begins a message and clears the hash value.
    void Begin(unsigned int digestBits, const std::uint8_t* key, std::size_t keySize);

    // Compresses the block of a level and passes the result upwards: if the block is full, or, when final,
    // to the end of the tree. A root becomes the hash value, its words as they lie in memory.
    Md6Result Process(int ell, bool final);

    // Compresses the block of a level, 0 to 27, to the 16 words C, and empties it.
    Md6Result CompressBlock(std::uint64_t* C, int ell, bool isRoot);

    // Finishes the tree and makes the hash value the digest, with zeros behind it.
    Md6Result Final();

    const unsigned char* HashValue() const { return hashValue_; }

  private:
    Md6Result Settle();
    Md6Result ProcessSettled(int ell, bool final);
    Md6Result CompressSettled(std::uint64_t* C, int ell, bool isRoot);
    void MakeDigest();

    unsigned char hashValue_[valueSize] = {};
};
