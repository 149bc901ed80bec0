// SPDX-License-Identifier: MIT
// Instruction sets by name, for functions that are compiled for them. A kernel's helper functions carry the same name
// as the kernel and are always inlined. Which features each name asks for is matched by the bits in CpuFeatures.h.
#pragma once

#if defined(__x86_64__)
// A kernel for 64-bit x86. Elsewhere it is null, and its features are never found.
#    define X86(kernel) kernel
#    if defined(FYRN_EMULATED_INSTRUCTIONS) // tests that work out in plain C what newer instructions do
#        define ISA(features)
#    else
#        define ISA(features) __attribute__((target(features)))
#    endif
#    define ISA_PCLMUL ISA("sse4.1,pclmul")
#    define ISA_SHA ISA("sse4.1,sha")
#    define ISA_BMI ISA("bmi,bmi2")
#    define ISA_AVX2 ISA("avx2")
#    define ISA_AVX2_BMI ISA("avx2,bmi,bmi2")
#    define ISA_VPCLMUL ISA("avx2,pclmul,vpclmulqdq")
#    define ISA_AVX512 ISA("avx512f,avx512bw,avx512dq,avx512vl")
#    define ISA_AVX512_BMI ISA("avx512f,avx512bw,avx512dq,avx512vl,bmi,bmi2")
#    define ISA_AVX512_VPCLMUL ISA("avx512f,avx512bw,avx512dq,avx512vl,pclmul,vpclmulqdq")
#    define ISA_AVX512_VBMI_GFNI ISA("avx512f,avx512bw,avx512dq,avx512vl,avx512vbmi,gfni")
#else
#    define X86(kernel) nullptr
#endif

#if defined(                                                                                                 \
    FYRN_EMULATED_INSTRUCTIONS) // thousands of emulated instructions in one function take minutes to compile
#    define ALWAYS_INLINE inline __attribute__((noinline))
#else
#    define ALWAYS_INLINE inline __attribute__((always_inline))
#endif
