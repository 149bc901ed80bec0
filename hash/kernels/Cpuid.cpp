// SPDX-License-Identifier: MIT
#include "hash/kernels/Cpuid.h"

namespace fyrn::kernels {
namespace {

constexpr std::uint32_t Bits(auto... positions) {
    return (... | (std::uint32_t{1} << positions));
}

// Leaf 1, ECX.
constexpr std::uint32_t pclmulqdq = Bits(1);
constexpr std::uint32_t ssse3AndSse41 = Bits(9, 19);
constexpr std::uint32_t osxsaveAndAvx = Bits(27, 28);
// Leaf 7, EBX.
constexpr std::uint32_t bmi1AndBmi2 = Bits(3, 8);
constexpr std::uint32_t avx2 = Bits(5);
constexpr std::uint32_t avx512FDqBwVl = Bits(16, 17, 30, 31);
constexpr std::uint32_t shaInstructions = Bits(29);
// Leaf 7, ECX.
constexpr std::uint32_t avx512Vbmi = Bits(1);
constexpr std::uint32_t gfni = Bits(8);
constexpr std::uint32_t vpclmulqdq = Bits(10);
// XCR0.
constexpr std::uint32_t xmmAndYmm = Bits(1, 2);
constexpr std::uint32_t masksAndZmm = Bits(5, 6, 7);

bool HasAll(std::uint32_t word, std::uint32_t bits) {
    return (word & bits) == bits;
}

CpuFeatures When(bool supported, CpuFeatures feature) {
    return supported ? feature : cpu::none;
}

} // namespace

CpuFeatures FeaturesOf(const CpuidWords& words) {
    const bool sse41 = HasAll(words.leaf1Ecx, ssse3AndSse41);
    const bool bmi = HasAll(words.leaf7Ebx, bmi1AndBmi2);
    const bool ymm = HasAll(words.leaf1Ecx, osxsaveAndAvx) && HasAll(words.xcr0, xmmAndYmm);
    const bool hasAvx2 = ymm && HasAll(words.leaf7Ebx, avx2);
    const bool avx512 =
        bmi && hasAvx2 && HasAll(words.xcr0, masksAndZmm) && HasAll(words.leaf7Ebx, avx512FDqBwVl);
    return When(sse41, cpu::ssse3) | When(sse41 && HasAll(words.leaf1Ecx, pclmulqdq), cpu::pclmul) |
           When(sse41 && HasAll(words.leaf7Ebx, shaInstructions), cpu::sha) | When(bmi, cpu::bmi) |
           When(hasAvx2, cpu::avx2) | When(avx512, cpu::avx512) |
           When(avx512 && HasAll(words.leaf7Ecx, avx512Vbmi), cpu::avx512vbmi) |
           When(sse41 && HasAll(words.leaf7Ecx, gfni), cpu::gfni) |
           When(hasAvx2 && HasAll(words.leaf7Ecx, vpclmulqdq), cpu::vpclmul);
}

} // namespace fyrn::kernels
