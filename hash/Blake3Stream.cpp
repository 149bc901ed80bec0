// SPDX-License-Identifier: MIT
#include "hash/Blake3Stream.h"

#include "hash/KernelName.h"
#include "hash/kernels/ByteOrder.h"
#include "hash/kernels/KernelSelect.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>

namespace fyrn::hash {
namespace {

using kernels::Blake3Level;

constexpr std::size_t maxSubtree = 128; // chunks whose nodes are compressed level by level

void StoreValue(std::uint8_t* bytes, const std::uint32_t* words, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        kernels::StoreLittle(bytes + 4 * i, words[i]);
}

// The value of a subtree of whole chunks, a power of two of them, of which the first has the number `first`.
void SubtreeValue(std::uint8_t* value, const std::uint8_t* bytes, std::size_t chunks, std::uint64_t first) {
    const auto compress = kernels::Kernels().blake3Nodes;
    if (chunks > maxSubtree) {
        const std::size_t half = chunks / 2;
        std::uint8_t pair[2 * kernels::blake3ValueSize];
        SubtreeValue(pair, bytes, half, first);
        SubtreeValue(pair + kernels::blake3ValueSize, bytes + half * kernels::blake3ChunkSize, half,
                     first + half);
        return compress(value, pair, 1, Blake3Level::parents, 0);
    }
    std::uint8_t values[2][maxSubtree * kernels::blake3ValueSize];
    compress(values[0], bytes, chunks, Blake3Level::chunks, first);
    int level = 0;
    for (std::size_t nodes = chunks / 2; nodes != 0; nodes /= 2, level ^= 1)
        compress(values[level ^ 1], values[level], nodes, Blake3Level::parents, 0);
    std::copy_n(values[level], kernels::blake3ValueSize, value);
}

} // namespace

void Blake3Stream::Reset() {
    chunks_ = 0;
    depth_ = 0;
    BeginChunk();
}

void Blake3Stream::BeginChunk() {
    std::copy(std::begin(kernels::blake3InitialValues), std::end(kernels::blake3InitialValues), value_);
    blocks_ = 0;
    fill_ = 0;
}

void Blake3Stream::Update(const std::uint8_t* bytes, std::size_t count) {
    while (count != 0) {
        if (ChunkFill() == chunkSize)
            FinishChunk();
        std::size_t taken;
        if (ChunkFill() == 0 && count > chunkSize) {
            taken = AddSubtree(bytes, count - 1);
        } else {
            taken = std::min(count, chunkSize - ChunkFill());
            AddToChunk(bytes, taken);
        }
        bytes += taken;
        count -= taken;
    }
}

// The flags of the chunk's next block, apart from those of its end.
std::uint32_t Blake3Stream::ChunkFlags() const {
    return blocks_ == 0 ? kernels::blake3_flag::chunkStart : 0;
}

void Blake3Stream::AddToChunk(const std::uint8_t* bytes, std::size_t count) {
    while (count != 0) {
        if (fill_ == blockSize) {
            kernels::Kernels().blake3(value_, value_, buffer_, blockSize, chunks_, ChunkFlags());
            ++blocks_;
            fill_ = 0;
        }
        const std::size_t taken = std::min(count, blockSize - fill_);
        std::copy_n(bytes, taken, buffer_ + fill_);
        fill_ += taken;
        bytes += taken;
        count -= taken;
    }
}

void Blake3Stream::FinishChunk() {
    kernels::Kernels().blake3(value_, value_, buffer_, blockSize, chunks_,
                              ChunkFlags() | kernels::blake3_flag::chunkEnd);
    std::uint8_t bytes[valueSize];
    StoreValue(bytes, value_, valueSize / 4);
    Push(bytes, 1);
    BeginChunk();
}

// Takes in whole chunks that make a complete subtree here, which is not the whole tree: the caller has more. Returns the
// number of bytes.
std::size_t Blake3Stream::AddSubtree(const std::uint8_t* bytes, std::size_t count) {
    std::size_t nodes = std::min(maxSubtree, std::bit_floor(count / chunkSize));
    if (chunks_ != 0)
        nodes = static_cast<std::size_t>(
            std::min<std::uint64_t>(nodes, std::uint64_t{1} << std::countr_zero(chunks_)));
    std::uint8_t value[valueSize];
    SubtreeValue(value, bytes, nodes, chunks_);
    Push(value, nodes);
    return nodes * chunkSize;
}

void Blake3Stream::Part(std::uint64_t number, const std::uint8_t* bytes, std::uint8_t* value) const {
    constexpr std::size_t chunks = partSize / chunkSize;
    SubtreeValue(value, bytes, chunks, number * chunks);
}

void Blake3Stream::AddPart(const std::uint8_t* value) {
    if (ChunkFill() == chunkSize)
        FinishChunk();
    Push(value, partSize / chunkSize);
}

// Makes one of subtrees of one size, as long as there are any: then as many wait as the number of chunks has ones. Only
// when more follows, because the last one of all is the root.
void Blake3Stream::JoinEqualSubtrees() {
    while (depth_ > std::popcount(chunks_)) {
        --depth_;
        std::uint8_t parent[valueSize];
        kernels::Kernels().blake3Nodes(parent, stack_[depth_ - 1], 1, Blake3Level::parents, 0);
        std::copy_n(parent, valueSize, stack_[depth_ - 1]);
    }
}

// Adds the root of the next subtree.
void Blake3Stream::Push(const std::uint8_t* value, std::uint64_t chunks) {
    JoinEqualSubtrees();
    std::copy_n(value, valueSize, stack_[depth_++]);
    chunks_ += chunks;
}

// The last chunk is joined with the subtrees that wait, the smallest first. The node that is left over is the root, which
// gives as many blocks as are wanted.
void Blake3Stream::Finish(std::uint8_t* digest) {
    JoinEqualSubtrees(); // the last chunk follows
    const auto compress = kernels::Kernels().blake3;
    std::uint32_t value[8];
    std::copy_n(value_, 8, value);
    std::uint8_t block[blockSize] = {};
    std::copy_n(buffer_, fill_, block);
    auto size = static_cast<std::uint32_t>(fill_);
    std::uint64_t counter = chunks_;
    std::uint32_t flags = ChunkFlags() | kernels::blake3_flag::chunkEnd;
    for (std::uint32_t out[16]; depth_ != 0; --depth_) {
        compress(out, value, block, size, counter, flags);
        std::copy_n(stack_[depth_ - 1], valueSize, block);
        StoreValue(block + valueSize, out, valueSize / 4);
        std::copy(std::begin(kernels::blake3InitialValues), std::end(kernels::blake3InitialValues), value);
        size = blockSize;
        counter = 0;
        flags = kernels::blake3_flag::parent;
    }
    std::uint64_t number = 0;
    for (std::size_t left = digestSize_; left != 0; ++number) {
        std::uint32_t out[16];
        compress(out, value, block, size, number, flags | kernels::blake3_flag::root);
        std::uint8_t bytes[sizeof out];
        StoreValue(bytes, out, std::size(out));
        const std::size_t piece = std::min(left, sizeof bytes);
        digest = std::copy_n(bytes, piece, digest);
        left -= piece;
    }
}

const char* Blake3Stream::Kernel() {
    return KernelName(kernels::KernelCandidates().blake3Nodes, kernels::Kernels().blake3Nodes);
}

} // namespace fyrn::hash
