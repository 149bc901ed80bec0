// SPDX-License-Identifier: MIT
#include "crypto/Md6NodeTree.h"

#include "hash/kernels/ByteOrder.h"

#include <cstring>
#include <iterator>

using fyrn::hash::Md6Level;

void Md6NodeTree::Begin(unsigned int digestBits, const std::uint8_t* key, std::size_t keySize) {
    Md6Tree::Begin(digestBits, key, keySize);
    std::memset(hashValue_, 0, sizeof hashValue_);
}

// Leaves in every level at most the one node that is not known to be complete: on level 1 the last one,
// above it a node that is not full. The highest level cannot pass on what is full: it is lost.
Md6Result Md6NodeTree::Settle() {
    if (levels_[1].Nodes() > 1)
        Flush(1, levels_[1].Nodes() - 1);
    for (int ell = 2; ell < highestLevel; ++ell)
        if (levels_[ell].FullNodes() > 0)
            Flush(ell, levels_[ell].FullNodes());
    Md6Level& highest = levels_[highestLevel];
    if (highest.FullNodes() == 0)
        return md6Success;
    highest.DropNodes(highest.FullNodes());
    return md6LevelTooHigh;
}

Md6Result Md6NodeTree::Process(int ell, bool final) {
    const Md6Result result = Settle();
    return result != md6Success ? result : ProcessSettled(ell, final);
}

Md6Result Md6NodeTree::ProcessSettled(int ell, bool final) {
    if (ell < 0 || ell > highestLevel)
        return ell < 0 ? md6LevelTooLow : md6LevelTooHigh;
    const Md6Level& level = levels_[ell];
    if (!final && level.FullNodes() == 0)
        return md6Success;
    const bool isRoot = final && ell == top_;
    if (isRoot && ell > 1 && level.Bits() == valueBits)
        return md6Success; // a single chaining value already is the root's

    std::uint64_t C[valueSize / 8];
    if (const Md6Result result = CompressSettled(C, ell, isRoot); result != md6Success)
        return result;
    if (isRoot) {
        std::memcpy(hashValue_, C, sizeof hashValue_);
        return md6Success;
    }
    // Level 1 holds the bytes of a message. A chaining value that comes to it from level 0 does not take their
    // order: it stays as the words lie in memory.
    unsigned char bytes[valueSize];
    std::memcpy(bytes, C, sizeof bytes);
    if (ell != 0)
        for (std::size_t i = 0; i < std::size(C); ++i)
            fyrn::kernels::StoreBig(bytes + 8 * i, C[i]);
    Append(ell + 1, bytes, 1);
    return ProcessSettled(ell + 1, final);
}

Md6Result Md6NodeTree::CompressBlock(std::uint64_t* C, int ell, bool isRoot) {
    const Md6Result result = Settle();
    return result != md6Success ? result : CompressSettled(C, ell, isRoot);
}

Md6Result Md6NodeTree::CompressSettled(std::uint64_t* C, int ell, bool isRoot) {
    if (ell < 0 || ell >= highestLevel)
        return ell < 0 ? md6LevelTooLow : md6LevelTooHigh;
    if (C == nullptr)
        return md6NullOutput;
    Md6Level& level = levels_[ell];
    if (level.Bits() > Md6Level::nodeBits)
        return md6BadPadding; // level 0 has passed more up than a block holds
    unsigned char value[valueSize];
    Compress(value, ell, level.PaddedData(), 1, isRoot, level.Padding());
    for (std::size_t i = 0; i < valueSize / 8; ++i)
        C[i] = fyrn::kernels::LoadBig<std::uint64_t>(value + 8 * i);
    level.DropNodes(1);
    level.CountNodes(1);
    return md6Success;
}

Md6Result Md6NodeTree::Final() {
    const Md6Result result = ProcessSettled(FlushBelowRoot(), true);
    if (result == md6Success)
        MakeDigest();
    return result;
}

// Turns the root's words into the bytes of the standard and cuts the digest from them.
void Md6NodeTree::MakeDigest() {
    unsigned char root[valueSize];
    for (std::size_t at = 0; at < sizeof root; at += 8) {
        std::uint64_t word;
        std::memcpy(&word, hashValue_ + at, sizeof word);
        fyrn::kernels::StoreBig(root + at, word);
    }
    std::memset(hashValue_, 0, sizeof hashValue_);
    CopyDigest(hashValue_, root);
}
