// SPDX-License-Identifier: MIT
// The functions that BlockStream.h hashes with: MD4 (RFC 1320), MD5 (RFC 1321), SHA-1 and SHA-2 (FIPS 180-4), Tiger
// (Anderson, Biham, 1996) with the paddings of Tiger and Tiger2, Whirlpool (ISO/IEC 10118-3), SM3 (GB/T 32905-2016) and
// RIPEMD-160 (Dobbertin, Bosselaers, Preneel, 1996).
#pragma once

#include "hash/KernelName.h"
#include "hash/kernels/KernelSelect.h"
#include "hash/kernels/LaneSelect.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace fyrn::hash {

struct Md4 {
    using Word = std::uint32_t;
    static constexpr std::size_t blockSize = 64, digestSize = 16, lengthSize = 8;
    static constexpr std::endian order = std::endian::little;
    static constexpr std::uint8_t padding = 0x80;
    static constexpr Word initialState[] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
        kernels::Kernels().md4(state, blocks, count);
    }
    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().md4, kernels::Kernels().md4);
    }
    static auto Lanes() { return kernels::LaneKernels().md4; }
};

struct Md5 : Md4 {
    static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
        kernels::Kernels().md5(state, blocks, count);
    }
    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().md5, kernels::Kernels().md5);
    }
    static auto Lanes() { return kernels::LaneKernels().md5; }
};

struct Sha1 {
    using Word = std::uint32_t;
    static constexpr std::size_t blockSize = 64, digestSize = 20, lengthSize = 8;
    static constexpr std::endian order = std::endian::big;
    static constexpr std::uint8_t padding = 0x80;
    static constexpr Word initialState[] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
    static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
        kernels::Kernels().sha1(state, blocks, count);
    }
    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().sha1, kernels::Kernels().sha1);
    }
    static auto Lanes() { return kernels::LaneKernels().sha1; }
};

struct Sha256 {
    using Word = std::uint32_t;
    static constexpr std::size_t blockSize = 64, digestSize = 32, lengthSize = 8;
    static constexpr std::endian order = std::endian::big;
    static constexpr std::uint8_t padding = 0x80;
    static constexpr Word initialState[] = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                            0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
        kernels::Kernels().sha256(state, blocks, count);
    }
    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().sha256, kernels::Kernels().sha256);
    }
    static auto Lanes() { return kernels::LaneKernels().sha256; }
};

struct Sha224 : Sha256 {
    static constexpr std::size_t digestSize = 28;
    static constexpr Word initialState[] = {0xc1059ed8, 0x367cd507, 0x3070dd17, 0xf70e5939,
                                            0xffc00b31, 0x68581511, 0x64f98fa7, 0xbefa4fa4};
};

struct Sha512 {
    using Word = std::uint64_t;
    static constexpr std::size_t blockSize = 128, digestSize = 64, lengthSize = 16;
    static constexpr std::endian order = std::endian::big;
    static constexpr std::uint8_t padding = 0x80;
    static constexpr Word initialState[] = {0x6a09e667f3bcc908, 0xbb67ae8584caa73b, 0x3c6ef372fe94f82b,
                                            0xa54ff53a5f1d36f1, 0x510e527fade682d1, 0x9b05688c2b3e6c1f,
                                            0x1f83d9abfb41bd6b, 0x5be0cd19137e2179};
    static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
        kernels::Kernels().sha512(state, blocks, count);
    }
    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().sha512, kernels::Kernels().sha512);
    }
    static auto Lanes() { return kernels::LaneKernels().sha512; }
};

struct Sha384 : Sha512 {
    static constexpr std::size_t digestSize = 48;
    static constexpr Word initialState[] = {0xcbbb9d5dc1059ed8, 0x629a292a367cd507, 0x9159015a3070dd17,
                                            0x152fecd8f70e5939, 0x67332667ffc00b31, 0x8eb44a8768581511,
                                            0xdb0c2e0d64f98fa7, 0x47b5481dbefa4fa4};
};

struct Sha512_224 : Sha512 {
    static constexpr std::size_t digestSize = 28;
    static constexpr Word initialState[] = {0x8c3d37c819544da2, 0x73e1996689dcd4d6, 0x1dfab7ae32ff9c82,
                                            0x679dd514582f9fcf, 0x0f6d2b697bd44da8, 0x77e36f7304c48942,
                                            0x3f9d85a86a1d36c8, 0x1112e6ad91d692a1};
};

struct Sha512_256 : Sha512 {
    static constexpr std::size_t digestSize = 32;
    static constexpr Word initialState[] = {0x22312194fc2bf72c, 0x9f555fa3c84c64c2, 0x2393b86b6f53b151,
                                            0x963877195940eabd, 0x96283ee2a88effe3, 0xbe5e1e2553863992,
                                            0x2b0199fc2c85b8aa, 0x0eb72ddc81c52ca2};
};

// The digest is the head of the state; Tiger2 differs from Tiger in the padding byte alone.
template <std::size_t bytes, std::uint8_t paddingByte>
struct Tiger {
    using Word = std::uint64_t;
    static constexpr std::size_t blockSize = 64, digestSize = bytes, lengthSize = 8;
    static constexpr std::endian order = std::endian::little;
    static constexpr std::uint8_t padding = paddingByte;
    static constexpr Word initialState[] = {0x0123456789abcdef, 0xfedcba9876543210, 0xf096a5b4c3b2e187};
    static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
        kernels::Kernels().tiger(state, blocks, count);
    }
    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().tiger, kernels::Kernels().tiger);
    }
    static auto Lanes() { return kernels::LaneKernels().tiger; }
};
template <std::size_t bytes>
using Tiger1 = Tiger<bytes, 0x01>;
template <std::size_t bytes>
using Tiger2 = Tiger<bytes, 0x80>;

struct Whirlpool {
    using Word = std::uint64_t;
    static constexpr std::size_t blockSize = 64, digestSize = 64, lengthSize = 32;
    static constexpr std::endian order = std::endian::big;
    static constexpr std::uint8_t padding = 0x80;
    static constexpr Word initialState[8] = {};
    static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
        kernels::Kernels().whirlpool(state, blocks, count);
    }
    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().whirlpool, kernels::Kernels().whirlpool);
    }
};

struct Sm3 {
    using Word = std::uint32_t;
    static constexpr std::size_t blockSize = 64, digestSize = 32, lengthSize = 8;
    static constexpr std::endian order = std::endian::big;
    static constexpr std::uint8_t padding = 0x80;
    static constexpr Word initialState[] = {0x7380166f, 0x4914b2b9, 0x172442d7, 0xda8a0600,
                                            0xa96f30bc, 0x163138aa, 0xe38dee4d, 0xb0fb0e4e};
    static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
        kernels::Kernels().sm3(state, blocks, count);
    }
    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().sm3, kernels::Kernels().sm3);
    }
};

struct Ripemd160 {
    using Word = std::uint32_t;
    static constexpr std::size_t blockSize = 64, digestSize = 20, lengthSize = 8;
    static constexpr std::endian order = std::endian::little;
    static constexpr std::uint8_t padding = 0x80;
    static constexpr Word initialState[] = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476, 0xc3d2e1f0};
    static void Compress(Word* state, const std::uint8_t* blocks, std::size_t count) {
        kernels::Kernels().ripemd160(state, blocks, count);
    }
    static const char* Kernel() {
        return KernelName(kernels::KernelCandidates().ripemd160, kernels::Kernels().ripemd160);
    }
};

} // namespace fyrn::hash
