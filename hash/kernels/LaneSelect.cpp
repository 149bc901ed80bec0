// SPDX-License-Identifier: MIT
#include "hash/kernels/LaneSelect.h"

#include "hash/kernels/Isa.h"

namespace fyrn::kernels {
namespace {

// Name, needs, kernel, lanes, messages from which it pays, and the same beside SHA instructions where that differs. What
// pays was measured on a Zen 4 core and, where the two differ, put between that and a Golden Cove core.

constexpr LaneCandidate<Blake2bLanes> blake2b[] = {
    {"avx512x8", cpu::avx512, X86(Blake2b_Lanes_X86Avx512x8), 8, 3},
    {"avx2x4", cpu::avx2, X86(Blake2b_Lanes_X86Avx2x4), 4, 2},
};

constexpr LaneCandidate<KeccakLanes> keccak[] = {
    {"avx512x8", cpu::avx512, X86(Keccak_Lanes_X86Avx512x8), 8, 3},
    {"avx2x4", cpu::avx2, X86(Keccak_Lanes_X86Avx2x4), 4, 2},
};

constexpr LaneCandidate<Md4Lanes> md4[] = {
    {"avx512x32", cpu::avx512, X86(Md4_Lanes_X86Avx512x32), 32, 17},
    {"avx512x16", cpu::avx512, X86(Md4_Lanes_X86Avx512x16), 16, 2},
    {"avx2x16", cpu::avx2, X86(Md4_Lanes_X86Avx2x16), 16, 9},
    {"avx2x8", cpu::avx2, X86(Md4_Lanes_X86Avx2x8), 8, 2},
};

constexpr LaneCandidate<Md5Lanes> md5[] = {
    {"avx512x32", cpu::avx512, X86(Md5_Lanes_X86Avx512x32), 32, 17},
    {"avx512x16", cpu::avx512, X86(Md5_Lanes_X86Avx512x16), 16, 2},
    {"avx2x16", cpu::avx2, X86(Md5_Lanes_X86Avx2x16), 16, 9},
    {"avx2x8", cpu::avx2, X86(Md5_Lanes_X86Avx2x8), 8, 2},
};

constexpr LaneCandidate<Sha1Lanes> sha1[] = {
    {"avx512x16", cpu::avx512, X86(Sha1_Lanes_X86Avx512x16), 16, 3, 8},
    {"avx2x8", cpu::avx2, X86(Sha1_Lanes_X86Avx2x8), 8, 2, 7},
    {"shax2", cpu::ssse3 | cpu::sha, X86(Sha1_Lanes_X86Shax2), 2, 2},
};

constexpr LaneCandidate<Sha256Lanes> sha256[] = {
    {"avx512x16", cpu::avx512, X86(Sha256_Lanes_X86Avx512x16), 16, 3, 13},
    {"avx2x8", cpu::avx2, X86(Sha256_Lanes_X86Avx2x8), 8, 3, paysNever},
    {"shax2", cpu::ssse3 | cpu::sha, X86(Sha256_Lanes_X86Shax2), 2, 2},
};

constexpr LaneCandidate<Sha512Lanes> sha512[] = {
    {"avx512x8", cpu::avx512, X86(Sha512_Lanes_X86Avx512x8), 8, 3},
    {"avx2x4", cpu::avx2, X86(Sha512_Lanes_X86Avx2x4), 4, 3},
};

constexpr LaneCandidate<SkeinLanes> skein256[] = {
    {"avx512x8", cpu::avx512, X86(Skein256_Lanes_X86Avx512x8), 8, 3},
    {"avx2x4", cpu::avx2, X86(Skein256_Lanes_X86Avx2x4), 4, 2},
};

constexpr LaneCandidate<SkeinLanes> skein512[] = {
    {"avx512x8", cpu::avx512, X86(Skein512_Lanes_X86Avx512x8), 8, 3},
    {"avx2x4", cpu::avx2, X86(Skein512_Lanes_X86Avx2x4), 4, 2},
};

constexpr LaneCandidate<SkeinLanes> skein1024[] = {
    {"avx512x8", cpu::avx512, X86(Skein1024_Lanes_X86Avx512x8), 8, 4},
    {"avx2x4", cpu::avx2, X86(Skein1024_Lanes_X86Avx2x4), 4, 3},
};

constexpr LaneCandidate<TigerLanes> tiger[] = {
    {"x3", cpu::none, Tiger_Lanes_Portablex3, 3, 3},
    {"x2", cpu::none, Tiger_Lanes_Portablex2, 2, 2},
};

constexpr LaneTable table = {
    .blake2b = blake2b,
    .keccak = keccak,
    .md4 = md4,
    .md5 = md5,
    .sha1 = sha1,
    .sha256 = sha256,
    .sha512 = sha512,
    .skein256 = skein256,
    .skein512 = skein512,
    .skein1024 = skein1024,
    .tiger = tiger,
};

} // namespace

const LaneTable& LaneKernels() {
    return table;
}

} // namespace fyrn::kernels
