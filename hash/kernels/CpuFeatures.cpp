// SPDX-License-Identifier: MIT
#include "hash/kernels/CpuFeatures.h"

#include "hash/kernels/Cpuid.h"

#if defined(__x86_64__) // not with 32 bits, where no kernel uses what the processor has (Isa.h)
#    include <cpuid.h>
#endif

namespace fyrn::kernels {
namespace {

CpuFeatures allowedFeatures = cpu::all;

#if defined(__x86_64__)

// Register 0. Only where CPUID says that the system lets programs ask.
std::uint32_t ReadXcr0() {
    std::uint32_t low = 0, high = 0;
    __asm__("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
    return low;
}

CpuFeatures DetectCpuFeatures() {
    CpuidWords words;
    std::uint32_t eax = 0, ebx = 0, ecx = 0, edx = 0;
    if (__get_cpuid(1, &eax, &ebx, &ecx, &edx) != 0)
        words.leaf1Ecx = ecx;
    if (__get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) != 0) {
        words.leaf7Ebx = ebx;
        words.leaf7Ecx = ecx;
    }
    if ((words.leaf1Ecx & bit_OSXSAVE) != 0)
        words.xcr0 = ReadXcr0();
    return FeaturesOf(words);
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
