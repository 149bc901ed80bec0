// SPDX-License-Identifier: MIT
#include "hash/Md6Tree.h"

#include "hash/Md6Compression.h"
#include "hash/kernels/ByteOrder.h"

#include <algorithm>
#include <cstring>

namespace fyrn::hash {
namespace {

constexpr int modeParameter = 64; // L, above the height of any tree: there is no sequential level

// The first 960 bits of the fractional part of the square root of 6.
constexpr std::uint64_t constantQ[15] = {
    0x7311c2812425cfa0, 0x6432286434aac8e7, 0xb60450e9ef68b7c1, 0xe8fb23908d9f06f1, 0xdd2e76cba691e5bf,
    0x0cd0d63b2c30bc41, 0x1f8ccf6823058f8a, 0x54e5ed5b88e3775d, 0x4ad12aae0a6d6031, 0x3e7f16bb88222e0d,
    0x8af8671d3fb50c2c, 0x995ad1178bd25c31, 0xc878c1dd04c4b633, 0x3b72066c7a1552ac, 0x0d6f3522631effcb,
};

} // namespace

// The key's words are big-endian and zero-padded.
void Md6Tree::Begin(unsigned int digestBits, const std::uint8_t* key, std::size_t keySize) {
    digestBits_ = digestBits;
    keySize_ = static_cast<unsigned int>(keySize);
    rounds_ = static_cast<int>(40 + digestBits / 4);
    std::uint8_t bytes[maxKeySize] = {};
    if (keySize != 0) {
        std::memcpy(bytes, key, keySize);
        rounds_ = std::max(80, rounds_);
    }
    for (int i = 0; i < 8; ++i)
        key_[i] = kernels::LoadBig<std::uint64_t>(bytes + 8 * i);
    Reset();
}

void Md6Tree::Reset() {
    for (Md6Level& level : levels_)
        level.Reset();
    top_ = 1;
}

// Full nodes of level 1 are compressed straight from the data.
void Md6Tree::UpdateBits(const std::uint8_t* bytes, std::uint64_t bitCount) {
    Md6Level& level = levels_[1];
    for (std::uint64_t position = 0; position < bitCount;) {
        const std::uint64_t rest = bitCount - position;
        if (level.Bits() == 0 && position % 8 == 0 && rest > Md6Level::capacity) {
            PassOn(1, bytes + position / 8, Md6Level::maxNodes, 0);
            position += Md6Level::capacity;
        } else if (level.Room() == 0) {
            Flush(1, level.Nodes());
        } else {
            const auto taken = static_cast<std::uint32_t>(std::min<std::uint64_t>(rest, level.Room()));
            level.Append(bytes, position, taken);
            position += taken;
        }
    }
}

// The value that the nodes of a level, a power of four of them from number `index` on, become at last.
void Md6Tree::SubtreeValue(std::uint8_t* value, int ell, std::uint64_t index, const std::uint8_t* nodes,
                           std::uint32_t count) const {
    std::uint8_t values[2][groupNodes * valueSize];
    int turn = 0;
    for (; count != 0; turn ^= 1, index /= 4, count /= 4, ++ell) {
        CompressFrom(index, values[turn], ell, nodes, count, false, 0);
        nodes = values[turn];
    }
    std::copy_n(nodes, valueSize, value);
}

void Md6Tree::Part(std::uint64_t number, const std::uint8_t* bytes, std::uint8_t* value) const {
    constexpr std::uint32_t groups = partSize / blockSize / groupNodes;
    std::uint8_t values[groups * valueSize];
    for (std::uint32_t i = 0; i < groups; ++i)
        SubtreeValue(values + i * valueSize, 1, (number * groups + i) * groupNodes,
                     bytes + std::size_t{i} * groupNodes * blockSize, groupNodes);
    SubtreeValue(value, groupHeight + 1, number * (groups / 4), values, groups / 4);
}

// All nodes that wait are full, and more data follows.
void Md6Tree::AddPart(const std::uint8_t* value) {
    std::uint32_t nodes = partSize / blockSize;
    for (int ell = 1; ell <= partHeight; ++ell, nodes /= 4) {
        if (levels_[ell].Bits() != 0)
            Flush(ell, levels_[ell].Nodes());
        levels_[ell].CountNodes(nodes);
    }
    Append(partHeight + 1, value, 1);
}

// Compresses neighbouring nodes of a level, the last of them padded.
void Md6Tree::CompressFrom(std::uint64_t index, std::uint8_t* values, int ell, const std::uint8_t* nodes,
                           std::uint32_t count, bool isRoot, std::uint32_t padding) const {
    std::uint64_t prefix[kernels::md6PrefixWords];
    std::copy_n(key_, 8, std::copy_n(constantQ, 15, prefix));
    const Md6Control control = {rounds_, modeParameter, isRoot, 0, keySize_, digestBits_};
    Md6Control lastControl = control;
    lastControl.padding = padding;
    kernels::Kernels().md6(values, nodes, count,
                           {.prefix = prefix,
                            .firstId = Md6NodeId(ell, index),
                            .control = control.Word(),
                            .lastControl = lastControl.Word(),
                            .rounds = rounds_});
}

// Compresses inner nodes and appends their chaining values to the next level.
void Md6Tree::PassOn(int ell, const std::uint8_t* nodes, std::uint32_t count, std::uint32_t padding) {
    std::uint8_t values[Md6Level::maxNodes * valueSize];
    Compress(values, ell, nodes, count, false, padding);
    levels_[ell].CountNodes(count);
    Append(ell + 1, values, count);
}

void Md6Tree::Append(int ell, const std::uint8_t* values, std::uint32_t count) {
    Md6Level& level = levels_[ell];
    top_ = std::max(top_, ell);
    while (count != 0) {
        if (level.Room() == 0)
            Flush(ell, level.Nodes());
        const std::uint32_t taken = std::min(count, level.Room() / valueBits);
        level.Append(values, 0, taken * valueBits);
        values += taken * valueSize;
        count -= taken;
    }
}

// Passes on the first nodes that wait on a level; the last one that waits is padded.
void Md6Tree::Flush(int ell, std::uint32_t count) {
    Md6Level& level = levels_[ell];
    const std::uint32_t padding = count == level.Nodes() ? level.Padding() : 0;
    PassOn(ell, level.PaddedData(), count, padding);
    level.DropNodes(count);
}

// Goes up from the lowest level with data. What waits on a level is the root's alone if it is a single node and no level
// is above; else all of it is passed on. Above level 1 no root is made of a single chaining value: a level comes into
// being when the one below has more than one node.
int Md6Tree::FlushBelowRoot() {
    int ell = 1;
    while (ell < top_ && levels_[ell].Bits() == 0)
        ++ell;
    for (; ell < highestLevel && (ell < top_ || levels_[ell].Nodes() > 1); ++ell)
        Flush(ell, levels_[ell].Nodes());
    return ell;
}

void Md6Tree::Finish(std::uint8_t* digest) {
    const int ell = FlushBelowRoot();
    std::uint8_t root[valueSize];
    Compress(root, ell, levels_[ell].PaddedData(), 1, true, levels_[ell].Padding());
    CopyDigest(digest, root);
}

// The digest is the last digestBits_ bits of the root's value, moved to the front of its bytes.
void Md6Tree::CopyDigest(std::uint8_t* digest, const std::uint8_t* root) const {
    const unsigned int size = (digestBits_ + 7) / 8;
    const unsigned int shift = (8 - digestBits_ % 8) % 8;
    const std::uint8_t* const bytes = root + valueSize - size;
    for (unsigned int i = 0; i < size; ++i) {
        const unsigned int next = i + 1 < size ? bytes[i + 1] : 0;
        digest[i] =
            static_cast<std::uint8_t>((static_cast<unsigned int>(bytes[i]) << 8 | next) << shift >> 8);
    }
}

} // namespace fyrn::hash
