// SPDX-License-Identifier: MIT
#include "hash/kernels/CpuFeatures.h"

namespace fyrn::kernels {
namespace {

CpuFeatures allowedFeatures = cpu::all;

#if defined(__x86_64__) // not with 32 bits, where no kernel uses what the processor has (Isa.h)

CpuFeatures When(bool supported, CpuFeatures feature) {
    return supported ? feature : cpu::none;
}

// SHA-1 and SHA-256 instructions: leaf 7, EBX bit 29. The compiler's own query knows no name for them.
bool HasShaInstructions() {
    unsigned int eax = 7, ebx = 0, ecx = 0, edx = 0;
    __asm__("cpuid" : "+a"(eax), "=b"(ebx), "+c"(ecx), "=d"(edx));
    return (ebx >> 29 & 1) != 0;
}

CpuFeatures DetectCpuFeatures() {
    __builtin_cpu_init();
    const bool sse41 = __builtin_cpu_supports("ssse3") && __builtin_cpu_supports("sse4.1");
    const bool bmi = __builtin_cpu_supports("bmi") && __builtin_cpu_supports("bmi2");
    const bool avx2 = __builtin_cpu_supports("avx") && __builtin_cpu_supports("avx2");
    return When(sse41, cpu::ssse3) | When(__builtin_cpu_supports("pclmul") && sse41, cpu::pclmul) |
           When(sse41 && HasShaInstructions(), cpu::sha) | When(bmi, cpu::bmi) | When(avx2, cpu::avx2) |
           When(bmi && avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                    __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl"),
                cpu::avx512) |
           When(__builtin_cpu_supports("avx512vbmi"), cpu::avx512vbmi) |
           When(__builtin_cpu_supports("gfni"), cpu::gfni) |
           When(__builtin_cpu_supports("vpclmulqdq"), cpu::vpclmul);
}

CpuMaker DetectMaker() {
    __builtin_cpu_init();
    return __builtin_cpu_is("amd") ? CpuMaker::amd : CpuMaker::other;
}

#else

CpuFeatures DetectCpuFeatures() {
    return cpu::none;
}

CpuMaker DetectMaker() {
    return CpuMaker::other;
}

#endif

} // namespace

CpuFeatures AvailableCpuFeatures() {
    static const CpuFeatures found = DetectCpuFeatures();
    return found & allowedFeatures;
}

CpuMaker ProcessorMaker() {
    return DetectMaker();
}

void LimitCpuFeatures(CpuFeatures allowed) {
    allowedFeatures = allowed;
}

} // namespace fyrn::kernels
