// SPDX-License-Identifier: MIT
#include "hash/kernels/KernelSelect.h"

#include "hash/kernels/Isa.h"

#include <algorithm>

namespace fyrn::kernels {
namespace {

// Rotations and ternary logic of AVX-512 make short chains on Intel's processors. On AMD's the chains through vectors
// are longer than those of the kernel behind it (Zen 4: MD4 0.68 times as fast, MD5 0.77, Keccak 0.95, BLAKE2b 0.97).
// BEXTR, which the Tiger kernel uses, is one operation on AMD's processors and two on Intel's.

constexpr Candidate<Blake2bCompress> blake2b[] = {
    {"avx512", cpu::avx512, X86(Blake2b_Compress_X86Avx512), CpuMaker::other},
    {"avx2", cpu::avx2, X86(Blake2b_Compress_X86Avx2)},
    {"portable", cpu::none, Blake2b_Compress_Portable},
};

constexpr Candidate<Blake3Compress> blake3[] = {
    {"portable", cpu::none, Blake3_Compress_Portable},
};

constexpr Candidate<Blake3Nodes> blake3Nodes[] = {
    {"avx512", cpu::avx512, X86(Blake3_Nodes_X86Avx512)},
    {"avx2", cpu::avx2, X86(Blake3_Nodes_X86Avx2)},
    {"portable", cpu::none, Blake3_Nodes_Portable},
};

constexpr Candidate<CrcBytes> crc[] = {
    {"avx512", cpu::avx512 | cpu::pclmul | cpu::vpclmul, X86(Crc_Bytes_X86Avx512)},
    {"vpclmul", cpu::avx2 | cpu::pclmul | cpu::vpclmul, X86(Crc_Bytes_X86Vpclmul)},
    {"pclmul", cpu::ssse3 | cpu::pclmul, X86(Crc_Bytes_X86Pclmul)},
    {"portable", cpu::none, Crc_Bytes_Portable},
};

constexpr Candidate<KeccakBlocks> keccak[] = {
    {"avx512", cpu::avx512, X86(Keccak_Blocks_X86Avx512), CpuMaker::other},
    {"bmi", cpu::bmi, X86(Keccak_Blocks_X86Bmi)},
    {"portable", cpu::none, Keccak_Blocks_Portable},
};

constexpr Candidate<Md4Blocks> md4[] = {
    {"avx512", cpu::avx512, X86(Md4_Blocks_X86Avx512), CpuMaker::other},
    {"portable", cpu::none, Md4_Blocks_Portable},
};

constexpr Candidate<Md5Blocks> md5[] = {
    {"avx512", cpu::avx512, X86(Md5_Blocks_X86Avx512), CpuMaker::other},
    {"portable", cpu::none, Md5_Blocks_Portable},
};

constexpr Candidate<Md6Nodes> md6[] = {
    {"avx512", cpu::avx512, X86(Md6_Nodes_X86Avx512)},
    {"avx2", cpu::avx2, X86(Md6_Nodes_X86Avx2)},
    {"portable", cpu::none, Md6_Nodes_Portable},
};

constexpr Candidate<Ripemd160Blocks> ripemd160[] = {
    {"portable", cpu::none, Ripemd160_Blocks_Portable},
};

constexpr Candidate<Sha1Blocks> sha1[] = {
    {"sha", cpu::ssse3 | cpu::sha, X86(Sha1_Blocks_X86Sha)},
    {"portable", cpu::none, Sha1_Blocks_Portable},
};

constexpr Candidate<Sha256Blocks> sha256[] = {
    {"sha", cpu::ssse3 | cpu::sha, X86(Sha256_Blocks_X86Sha)},
    {"portable", cpu::none, Sha256_Blocks_Portable},
};

constexpr Candidate<Sha512Blocks> sha512[] = {
    {"avx512", cpu::avx512, X86(Sha512_Blocks_X86Avx512)},
    {"avx2", cpu::avx2 | cpu::bmi, X86(Sha512_Blocks_X86Avx2)},
    {"portable", cpu::none, Sha512_Blocks_Portable},
};

constexpr Candidate<SkeinBlocks> skein256[] = {
    {"portable", cpu::none, Skein256_Blocks_Portable},
};

constexpr Candidate<SkeinBlocks> skein512[] = {
    {"portable", cpu::none, Skein512_Blocks_Portable},
};

constexpr Candidate<SkeinBlocks> skein1024[] = {
    {"avx512", cpu::avx512, X86(Skein1024_Blocks_X86Avx512)},
    {"avx2", cpu::avx2, X86(Skein1024_Blocks_X86Avx2)},
    {"portable", cpu::none, Skein1024_Blocks_Portable},
};

constexpr Candidate<Sm3Blocks> sm3[] = {
    {"avx2", cpu::avx2 | cpu::bmi, X86(Sm3_Blocks_X86Avx2)},
    {"bmi", cpu::bmi, X86(Sm3_Blocks_X86Bmi)},
    {"portable", cpu::none, Sm3_Blocks_Portable},
};

constexpr Candidate<TigerBlocks> tiger[] = {
    {"bmi", cpu::bmi, X86(Tiger_Blocks_X86Bmi), CpuMaker::amd},
    {"portable", cpu::none, Tiger_Blocks_Portable},
};

constexpr Candidate<WhirlpoolBlocks> whirlpool[] = {
    {"avx512", cpu::avx512 | cpu::avx512vbmi | cpu::gfni, X86(Whirlpool_Blocks_X86Avx512)},
    {"avx2", cpu::avx2, X86(Whirlpool_Blocks_X86Avx2)},
    {"portable", cpu::none, Whirlpool_Blocks_Portable},
};

constexpr CandidateTable candidates = {
    .blake2b = blake2b,
    .blake3 = blake3,
    .blake3Nodes = blake3Nodes,
    .crc = crc,
    .keccak = keccak,
    .md4 = md4,
    .md5 = md5,
    .md6 = md6,
    .ripemd160 = ripemd160,
    .sha1 = sha1,
    .sha256 = sha256,
    .sha512 = sha512,
    .skein256 = skein256,
    .skein512 = skein512,
    .skein1024 = skein1024,
    .sm3 = sm3,
    .tiger = tiger,
    .whirlpool = whirlpool,
};

template <class Function>
Function* Best(Candidates<Function> all, CpuFeatures available, CpuMaker maker) {
    return std::find_if(all.begin(), all.end(),
                        [=](const auto& candidate) {
                            const bool canRun = (candidate.needs & ~available) == 0;
                            return canRun && (candidate.fastOn == CpuMaker::any || candidate.fastOn == maker);
                        })
        ->function;
}

} // namespace

const CandidateTable& KernelCandidates() {
    return candidates;
}

KernelSet KernelsFor(CpuFeatures available, CpuMaker maker) {
    KernelSet chosen{};
    ForEachAlgorithm(
        [&](const char*, auto member) { member(chosen) = Best(member(candidates), available, maker); });
    return chosen;
}

const KernelSet& Kernels() {
    static const KernelSet chosen = KernelsFor(AvailableCpuFeatures(), ProcessorMaker());
    return chosen;
}

} // namespace fyrn::kernels
