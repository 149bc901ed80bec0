// SPDX-License-Identifier: MIT
#include "hash/kernels/KernelSelect.h"

#include "hash/kernels/Isa.h"

namespace fyrn::kernels {
namespace {

constexpr Candidate<Blake2bCompress> blake2b[] = {
    {"avx512", cpu::avx512, X86(Blake2b_Compress_X86Avx512)},
    {"avx2", cpu::avx2, X86(Blake2b_Compress_X86Avx2)},
    {"portable", cpu::none, Blake2b_Compress_Portable},
};

constexpr Candidate<CrcBytes> crc[] = {
    {"avx512", cpu::avx512 | cpu::pclmul | cpu::vpclmul, X86(Crc_Bytes_X86Avx512)},
    {"vpclmul", cpu::avx2 | cpu::pclmul | cpu::vpclmul, X86(Crc_Bytes_X86Vpclmul)},
    {"pclmul", cpu::ssse3 | cpu::pclmul, X86(Crc_Bytes_X86Pclmul)},
    {"portable", cpu::none, Crc_Bytes_Portable},
};

constexpr Candidate<KeccakBlocks> keccak[] = {
    {"avx512", cpu::avx512, X86(Keccak_Blocks_X86Avx512)},
    {"bmi", cpu::bmi, X86(Keccak_Blocks_X86Bmi)},
    {"portable", cpu::none, Keccak_Blocks_Portable},
};

constexpr Candidate<Md4Blocks> md4[] = {
    {"avx512", cpu::avx512, X86(Md4_Blocks_X86Avx512)},
    {"portable", cpu::none, Md4_Blocks_Portable},
};

constexpr Candidate<Md5Blocks> md5[] = {
    {"avx512", cpu::avx512, X86(Md5_Blocks_X86Avx512)},
    {"portable", cpu::none, Md5_Blocks_Portable},
};

constexpr Candidate<Md6Nodes> md6[] = {
    {"avx512", cpu::avx512, X86(Md6_Nodes_X86Avx512)},
    {"avx2", cpu::avx2, X86(Md6_Nodes_X86Avx2)},
    {"portable", cpu::none, Md6_Nodes_Portable},
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

constexpr Candidate<TigerBlocks> tiger[] = {
    {"bmi", cpu::bmi, X86(Tiger_Blocks_X86Bmi)},
    {"portable", cpu::none, Tiger_Blocks_Portable},
};

constexpr Candidate<WhirlpoolBlocks> whirlpool[] = {
    {"avx512", cpu::avx512 | cpu::avx512vbmi | cpu::gfni, X86(Whirlpool_Blocks_X86Avx512)},
    {"avx2", cpu::avx2, X86(Whirlpool_Blocks_X86Avx2)},
    {"portable", cpu::none, Whirlpool_Blocks_Portable},
};

template <class Function, std::size_t size>
Function* Best(const Candidate<Function> (&candidates)[size]) {
    const CpuFeatures available = AvailableCpuFeatures();
    const Candidate<Function>* candidate = candidates;
    while ((candidate->needs & ~available) != 0)
        ++candidate;
    return candidate->function;
}

} // namespace

std::span<const Candidate<Blake2bCompress>> Blake2bCandidates() {
    return blake2b;
}

std::span<const Candidate<CrcBytes>> CrcCandidates() {
    return crc;
}

std::span<const Candidate<KeccakBlocks>> KeccakCandidates() {
    return keccak;
}

std::span<const Candidate<Md4Blocks>> Md4Candidates() {
    return md4;
}

std::span<const Candidate<Md5Blocks>> Md5Candidates() {
    return md5;
}

std::span<const Candidate<Md6Nodes>> Md6Candidates() {
    return md6;
}

std::span<const Candidate<Sha1Blocks>> Sha1Candidates() {
    return sha1;
}

std::span<const Candidate<Sha256Blocks>> Sha256Candidates() {
    return sha256;
}

std::span<const Candidate<Sha512Blocks>> Sha512Candidates() {
    return sha512;
}

std::span<const Candidate<SkeinBlocks>> Skein256Candidates() {
    return skein256;
}

std::span<const Candidate<SkeinBlocks>> Skein512Candidates() {
    return skein512;
}

std::span<const Candidate<SkeinBlocks>> Skein1024Candidates() {
    return skein1024;
}

std::span<const Candidate<TigerBlocks>> TigerCandidates() {
    return tiger;
}

std::span<const Candidate<WhirlpoolBlocks>> WhirlpoolCandidates() {
    return whirlpool;
}

const KernelSet& Kernels() {
    static const KernelSet chosen = {
        .blake2b = Best(blake2b),
        .crc = Best(crc),
        .keccak = Best(keccak),
        .md4 = Best(md4),
        .md5 = Best(md5),
        .md6 = Best(md6),
        .sha1 = Best(sha1),
        .sha256 = Best(sha256),
        .sha512 = Best(sha512),
        .skein256 = Best(skein256),
        .skein512 = Best(skein512),
        .skein1024 = Best(skein1024),
        .tiger = Best(tiger),
        .whirlpool = Best(whirlpool),
    };
    return chosen;
}

} // namespace fyrn::kernels
