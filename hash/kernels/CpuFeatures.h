// SPDX-License-Identifier: MIT
// What this processor and its system support, as one bit per group of instructions that a kernel may need.
#pragma once

#include <cstdint>

namespace fyrn::kernels {

using CpuFeatures = std::uint32_t;

namespace cpu {
inline constexpr CpuFeatures none = 0;
inline constexpr CpuFeatures ssse3 = 1u << 0;      // SSSE3 and SSE4.1
inline constexpr CpuFeatures pclmul = 1u << 1;     // PCLMULQDQ, with SSSE3 and SSE4.1
inline constexpr CpuFeatures sha = 1u << 2;        // SHA-1 and SHA-256 instructions, with SSSE3 and SSE4.1
inline constexpr CpuFeatures bmi = 1u << 3;        // BMI1 and BMI2
inline constexpr CpuFeatures avx2 = 1u << 4;       // AVX and AVX2
inline constexpr CpuFeatures avx512 = 1u << 5;     // AVX-512 F, BW, DQ and VL, with BMI and AVX2
inline constexpr CpuFeatures avx512vbmi = 1u << 6; // AVX-512 VBMI, with AVX-512
inline constexpr CpuFeatures gfni = 1u << 7;       // GFNI, with SSSE3 and SSE4.1
inline constexpr CpuFeatures vpclmul = 1u << 8;    // VPCLMULQDQ, with AVX2
inline constexpr CpuFeatures all = ~CpuFeatures{0};
} // namespace cpu

// The features that kernels may use: those found, less those taken away by LimitCpuFeatures.
CpuFeatures AvailableCpuFeatures();

// Who made the processor, as far as it decides which of two kernels is the faster one.
enum class CpuMaker { any, amd, other };

// Never any.
CpuMaker ProcessorMaker();

// Takes away every feature outside `allowed`. For tests and
// benchmarks; works only before the first kernel is chosen.
void LimitCpuFeatures(CpuFeatures allowed);

} // namespace fyrn::kernels
