// SPDX-License-Identifier: MIT
#pragma once

#include "crypto/CCrypto_Salt.h"
#include "crypto/Md6NodeTree.h"
#include "platform/File.h"

#include <cstdint>
#include <string>

// MD6 (Rivest et al., "The MD6 hash function", 2008) of a file, with the mode parameter L = 64: always the
// full tree. Up to 64 bytes of the salt are the key, whatever the salt's placement, besides being hashed
// like any salt: users' recorded digests depend on both.
class CCrypto_Md6 : public CCrypto_Salt {
  public:
    explicit CCrypto_Md6(std::wstring* pWstrDebugLog); // the log is not used

    // Begins a message whose digest shall have d bits, 1 to 512; with any other d nothing changes.
    int Initialize(unsigned short d, int ignored);

    // Takes message bits, the most significant one of a byte first.
    int Md6_Update(const unsigned char* data, std::uint64_t bitCount);

    // Finishes the tree and leaves the digest in HashValue.
    int Md6_Final();

    // Compresses the block of a level and passes the result upwards: if the block is full, or, when final,
    // to the end of the tree.
    int Md6_Process(int ell, bool final);

    // Compresses the block of a level, 0 to 27, as the root (z) or as an inner node, and empties it.
    int Md6_CompressBlock(std::uint64_t* C, int ell, bool z);

    // Compresses the node number i of level ell: 64 words B, the constant Q of 15 words and 8 key words K
    // to 16 words.
    int Md6_CompressStandard(std::uint64_t* C, const std::uint64_t* Q, const std::uint64_t* K, int ell,
                             std::uint64_t i, int r, int L, bool z, int p, int keylen, int d,
                             const std::uint64_t* B);

    // The compression function: 89 words N to 16 words, in r rounds.
    int Md6_Compress(std::uint64_t* C, const std::uint64_t* N, int r);

    // The digest after Md6_Final: (d + 7) / 8 bytes, zeros up to 128. After Md6_Process has compressed the
    // root, its 16 words as they lie in memory.
    const unsigned char* HashValue() const { return tree_.HashValue(); }

    // Writes the digest of salt and file, (d + 7) / 8 bytes. False when a pointer is null, d is above 512
    // or the file cannot be opened. True in all other cases, though d = 0 leaves the output as it was.
    bool GetFromFile(const wchar_t* path, unsigned char* digest, int ignoredSize, unsigned short d,
                     int ignored);

    // The same as lower-case hex digits and a zero; `text` holds 1024 characters.
    bool GetFromFileAsString(const wchar_t* path, char* text, unsigned int ignoredSize, unsigned short d,
                             int ignored);

  private:
    int HashFile(platform::InputFile& file, unsigned short d);

    Md6NodeTree tree_;
};
