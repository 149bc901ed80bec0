// SPDX-License-Identifier: MIT
// The kernels in use: for every algorithm the first of its candidates that this machine can run.
#pragma once

#include "hash/kernels/Blake2b.h"
#include "hash/kernels/CpuFeatures.h"
#include "hash/kernels/Crc.h"
#include "hash/kernels/Keccak.h"
#include "hash/kernels/Md4.h"
#include "hash/kernels/Md5.h"
#include "hash/kernels/Md6.h"
#include "hash/kernels/Sha1.h"
#include "hash/kernels/Sha256.h"
#include "hash/kernels/Sha512.h"
#include "hash/kernels/Skein.h"
#include "hash/kernels/Tiger.h"
#include "hash/kernels/Whirlpool.h"

#include <span>

namespace fyrn::kernels {

// One implementation of an algorithm, and all that it needs of the processor.
template <class Function>
struct Candidate {
    const char* name;
    CpuFeatures needs;
    Function* function;
};

// Every candidate, best first; the last one is the portable
// kernel and needs nothing. For tests and benchmarks.
std::span<const Candidate<Blake2bCompress>> Blake2bCandidates();
std::span<const Candidate<CrcBytes>> CrcCandidates();
std::span<const Candidate<KeccakBlocks>> KeccakCandidates();
std::span<const Candidate<Md4Blocks>> Md4Candidates();
std::span<const Candidate<Md5Blocks>> Md5Candidates();
std::span<const Candidate<Md6Nodes>> Md6Candidates();
std::span<const Candidate<Sha1Blocks>> Sha1Candidates();
std::span<const Candidate<Sha256Blocks>> Sha256Candidates();
std::span<const Candidate<Sha512Blocks>> Sha512Candidates();
std::span<const Candidate<SkeinBlocks>> Skein256Candidates();
std::span<const Candidate<SkeinBlocks>> Skein512Candidates();
std::span<const Candidate<SkeinBlocks>> Skein1024Candidates();
std::span<const Candidate<TigerBlocks>> TigerCandidates();
std::span<const Candidate<WhirlpoolBlocks>> WhirlpoolCandidates();

struct KernelSet {
    Blake2bCompress* blake2b;
    CrcBytes* crc;
    KeccakBlocks* keccak;
    Md4Blocks* md4;
    Md5Blocks* md5;
    Md6Nodes* md6;
    Sha1Blocks* sha1;
    Sha256Blocks* sha256;
    Sha512Blocks* sha512;
    SkeinBlocks* skein256;
    SkeinBlocks* skein512;
    SkeinBlocks* skein1024;
    TigerBlocks* tiger;
    WhirlpoolBlocks* whirlpool;
};

// Chosen once, at first use.
const KernelSet& Kernels();

} // namespace fyrn::kernels
