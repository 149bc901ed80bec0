// SPDX-License-Identifier: MIT
// The kernels in use: for every algorithm the first of its candidates that this machine can run, and that is not
// known to be slow on it.
#pragma once

#include "hash/kernels/Blake2b.h"
#include "hash/kernels/Blake3.h"
#include "hash/kernels/BlockForm.h"
#include "hash/kernels/CpuFeatures.h"
#include "hash/kernels/Crc.h"
#include "hash/kernels/Keccak.h"
#include "hash/kernels/Md4.h"
#include "hash/kernels/Md5.h"
#include "hash/kernels/Md6.h"
#include "hash/kernels/Ripemd160.h"
#include "hash/kernels/Sha1.h"
#include "hash/kernels/Sha256.h"
#include "hash/kernels/Sha512.h"
#include "hash/kernels/Skein.h"
#include "hash/kernels/Sm3.h"
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
    CpuMaker fastOn = CpuMaker::any; // whose processors it is faster on than the next one
};

// A member for every algorithm.
template <template <class Function> class Of>
struct PerAlgorithm {
    Of<Blake2bCompress> blake2b;
    Of<Blake3Compress> blake3;
    Of<Blake3Nodes> blake3Nodes;
    Of<CrcBytes> crc;
    Of<KeccakBlocks> keccak;
    Of<Md4Blocks> md4;
    Of<Md5Blocks> md5;
    Of<Md6Nodes> md6;
    Of<Ripemd160Blocks> ripemd160;
    Of<Sha1Blocks> sha1;
    Of<Sha256Blocks> sha256;
    Of<Sha512Blocks> sha512;
    Of<SkeinBlocks> skein256;
    Of<SkeinBlocks> skein512;
    Of<SkeinBlocks> skein1024;
    Of<Sm3Blocks> sm3;
    Of<TigerBlocks> tiger;
    Of<WhirlpoolBlocks> whirlpool;
};

// Calls visit(name, member) for every algorithm; member(x) is that member of x, a PerAlgorithm. Where the kernels are of
// the form (state, blocks, count), the member's type has a Form (BlockForm.h).
template <class Visit>
void ForEachAlgorithm(Visit visit) {
    // clang-format off
    visit("Blake2b", [](auto& of) -> auto& { return of.blake2b; });
    visit("Blake3", [](auto& of) -> auto& { return of.blake3; });
    visit("Blake3Nodes", [](auto& of) -> auto& { return of.blake3Nodes; });
    visit("Crc", [](auto& of) -> auto& { return of.crc; });
    visit("Keccak", [](auto& of) -> auto& { return of.keccak; });
    visit("Md4", WithForm<BlockForm<std::uint32_t, 4, 64>>([](auto& of) -> auto& { return of.md4; }));
    visit("Md5", WithForm<BlockForm<std::uint32_t, 4, 64>>([](auto& of) -> auto& { return of.md5; }));
    visit("Md6", [](auto& of) -> auto& { return of.md6; });
    visit("Ripemd160", WithForm<BlockForm<std::uint32_t, 5, 64>>([](auto& of) -> auto& { return of.ripemd160; }));
    visit("Sha1", WithForm<BlockForm<std::uint32_t, 5, 64>>([](auto& of) -> auto& { return of.sha1; }));
    visit("Sha256", WithForm<BlockForm<std::uint32_t, 8, 64>>([](auto& of) -> auto& { return of.sha256; }));
    visit("Sha512", WithForm<BlockForm<std::uint64_t, 8, 128>>([](auto& of) -> auto& { return of.sha512; }));
    visit("Skein256", [](auto& of) -> auto& { return of.skein256; });
    visit("Skein512", [](auto& of) -> auto& { return of.skein512; });
    visit("Skein1024", [](auto& of) -> auto& { return of.skein1024; });
    visit("Sm3", WithForm<BlockForm<std::uint32_t, 8, 64>>([](auto& of) -> auto& { return of.sm3; }));
    visit("Tiger", WithForm<BlockForm<std::uint64_t, 3, 64>>([](auto& of) -> auto& { return of.tiger; }));
    visit("Whirlpool", WithForm<BlockForm<std::uint64_t, 8, 64>>([](auto& of) -> auto& { return of.whirlpool; }));
    // clang-format on
}

template <class Function>
using Candidates = std::span<const Candidate<Function>>;
using CandidateTable = PerAlgorithm<Candidates>;

// Every candidate, best first; the last one is the portable kernel and needs nothing. For tests and benchmarks.
const CandidateTable& KernelCandidates();

template <class Function>
using Chosen = Function*;
using KernelSet = PerAlgorithm<Chosen>;

// What is chosen on such a processor.
KernelSet KernelsFor(CpuFeatures available, CpuMaker maker);

// Chosen once, at first use, for this processor.
const KernelSet& Kernels();

} // namespace fyrn::kernels
