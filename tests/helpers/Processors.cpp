// SPDX-License-Identifier: MIT
#include "tests/helpers/Processors.h"

namespace helpers {
namespace {

namespace cpu = fyrn::kernels::cpu;

// Leaf 1, ECX.
constexpr std::uint32_t pclmul = 1u << 1, ssse3 = 1u << 9, sse41 = 1u << 19, osxsave = 1u << 27,
                        avx = 1u << 28;
constexpr std::uint32_t westmere = ssse3 | sse41 | pclmul;
constexpr std::uint32_t sandyBridge = westmere | osxsave | avx;
// Leaf 7, EBX.
constexpr std::uint32_t bmi1 = 1u << 3, avx2 = 1u << 5, bmi2 = 1u << 8, avx512f = 1u << 16,
                        avx512dq = 1u << 17, sha = 1u << 29, avx512bw = 1u << 30, avx512vl = 1u << 31;
constexpr std::uint32_t haswell = bmi1 | avx2 | bmi2;
constexpr std::uint32_t skylakeX = haswell | avx512f | avx512dq | avx512bw | avx512vl;
// Leaf 7, ECX.
constexpr std::uint32_t vbmi = 1u << 1, gfni = 1u << 8, vpclmul = 1u << 10;
// XCR0: x87 and XMM, YMM, and what AVX-512 adds.
constexpr std::uint32_t keepsXmm = 0x3, keepsYmm = 0x7, keepsZmm = 0xe7;

constexpr fyrn::kernels::CpuFeatures withSse = cpu::ssse3 | cpu::pclmul;
constexpr fyrn::kernels::CpuFeatures withAvx2 = withSse | cpu::bmi | cpu::avx2;

constexpr Processor processors[] = {
    {"core2", {ssse3, 0, 0, 0}, cpu::none},
    {"penryn", {ssse3 | sse41, 0, 0, 0}, cpu::ssse3},
    {"westmere", {westmere, 0, 0, 0}, withSse},
    {"goldmont", {westmere | osxsave, sha, 0, keepsXmm}, withSse | cpu::sha},
    {"sandy_bridge", {sandyBridge, 0, 0, keepsYmm}, withSse},
    {"piledriver", {sandyBridge, bmi1, 0, keepsYmm}, withSse},
    {"haswell", {sandyBridge, haswell, 0, keepsYmm}, withAvx2},
    {"haswell_without_bmi1", {sandyBridge, bmi2 | avx2, 0, keepsYmm}, withSse | cpu::avx2},
    {"haswell_without_bmi2", {sandyBridge, bmi1 | avx2, 0, keepsYmm}, withSse | cpu::avx2},
    {"haswell_without_pclmul", {sandyBridge & ~pclmul, haswell, 0, keepsYmm}, withAvx2 & ~cpu::pclmul},
    {"haswell_whose_system_keeps_no_ymm", {sandyBridge, haswell, 0, keepsXmm}, withSse | cpu::bmi},
    {"haswell_whose_system_has_no_xsave", {westmere | avx, haswell, 0, keepsYmm}, withSse | cpu::bmi},
    {"zen", {sandyBridge, haswell | sha, 0, keepsYmm}, withAvx2 | cpu::sha},
    {"zen3", {sandyBridge, haswell | sha, vpclmul, keepsYmm}, withAvx2 | cpu::sha | cpu::vpclmul},
    {"alder_lake",
     {sandyBridge, haswell | sha, gfni | vpclmul, keepsYmm},
     withAvx2 | cpu::sha | cpu::gfni | cpu::vpclmul},
    {"knights_landing", {sandyBridge, haswell | avx512f, 0, keepsZmm}, withAvx2},
    {"skylake_x", {sandyBridge, skylakeX, 0, keepsZmm}, withAvx2 | cpu::avx512},
    {"skylake_x_whose_system_keeps_no_zmm", {sandyBridge, skylakeX, 0, keepsYmm}, withAvx2},
    {"cannon_lake",
     {sandyBridge, skylakeX | sha, vbmi, keepsZmm},
     withAvx2 | cpu::sha | cpu::avx512 | cpu::avx512vbmi},
    {"ice_lake",
     {sandyBridge, skylakeX | sha, vbmi | gfni | vpclmul, keepsZmm},
     withAvx2 | cpu::sha | cpu::avx512 | cpu::avx512vbmi | cpu::gfni | cpu::vpclmul},
};

} // namespace

std::span<const Processor> Processors() {
    return processors;
}

} // namespace helpers
