// SPDX-License-Identifier: MIT
// Which features stand in what a processor says of itself.
#include "hash/kernels/Cpuid.h"

#include "tests/helpers/Processors.h"

#include <gtest/gtest.h>

namespace {

using fyrn::kernels::CpuFeatures;
using fyrn::kernels::CpuidWords;
using fyrn::kernels::FeaturesOf;
namespace cpu = fyrn::kernels::cpu;

constexpr CpuFeatures everything = cpu::ssse3 | cpu::pclmul | cpu::sha | cpu::bmi | cpu::avx2 | cpu::avx512 |
                                   cpu::avx512vbmi | cpu::gfni | cpu::vpclmul;
constexpr CpuFeatures withAvx512 = cpu::avx512 | cpu::avx512vbmi;
constexpr CpuFeatures withAvx = cpu::avx2 | cpu::vpclmul | withAvx512;
constexpr CpuFeatures withSse41 = cpu::ssse3 | cpu::pclmul | cpu::sha | cpu::gfni;

// What is lost when one bit alone is missing; every bit that is not here loses nothing.
struct Bit {
    std::uint32_t CpuidWords::*word;
    int position;
    CpuFeatures lost;
};

constexpr Bit bits[] = {
    {&CpuidWords::leaf1Ecx, 1, cpu::pclmul},           // PCLMULQDQ
    {&CpuidWords::leaf1Ecx, 9, withSse41},             // SSSE3
    {&CpuidWords::leaf1Ecx, 19, withSse41},            // SSE4.1
    {&CpuidWords::leaf1Ecx, 27, withAvx},              // OSXSAVE
    {&CpuidWords::leaf1Ecx, 28, withAvx},              // AVX
    {&CpuidWords::leaf7Ebx, 3, cpu::bmi | withAvx512}, // BMI1
    {&CpuidWords::leaf7Ebx, 5, withAvx},               // AVX2
    {&CpuidWords::leaf7Ebx, 8, cpu::bmi | withAvx512}, // BMI2
    {&CpuidWords::leaf7Ebx, 16, withAvx512},           // AVX-512 F
    {&CpuidWords::leaf7Ebx, 17, withAvx512},           // DQ
    {&CpuidWords::leaf7Ebx, 29, cpu::sha},             // SHA
    {&CpuidWords::leaf7Ebx, 30, withAvx512},           // BW
    {&CpuidWords::leaf7Ebx, 31, withAvx512},           // VL
    {&CpuidWords::leaf7Ecx, 1, cpu::avx512vbmi},       // VBMI
    {&CpuidWords::leaf7Ecx, 8, cpu::gfni},             // GFNI
    {&CpuidWords::leaf7Ecx, 10, cpu::vpclmul},         // VPCLMULQDQ
    {&CpuidWords::xcr0, 1, withAvx},                   // XMM
    {&CpuidWords::xcr0, 2, withAvx},                   // YMM
    {&CpuidWords::xcr0, 5, withAvx512},                // masks
    {&CpuidWords::xcr0, 6, withAvx512},                // the upper halves of ZMM0 to ZMM15
    {&CpuidWords::xcr0, 7, withAvx512},                // ZMM16 to ZMM31
};

constexpr std::uint32_t CpuidWords::*words[] = {&CpuidWords::leaf1Ecx, &CpuidWords::leaf7Ebx,
                                                &CpuidWords::leaf7Ecx, &CpuidWords::xcr0};

CpuFeatures LostWithout(std::uint32_t CpuidWords::*word, int position) {
    for (const Bit& bit : bits)
        if (bit.word == word && bit.position == position)
            return bit.lost;
    return cpu::none;
}

TEST(Cpuid, ProcessorsHaveTheFeaturesOfTheirKind) {
    for (const helpers::Processor& processor : helpers::Processors())
        EXPECT_EQ(FeaturesOf(processor.words), processor.features) << processor.name;
}

TEST(Cpuid, EveryFeatureNeedsEachOfItsBitsAndNoOther) {
    constexpr std::uint32_t all = ~std::uint32_t{0};
    const CpuidWords full = {all, all, all, all};
    ASSERT_EQ(FeaturesOf(full), everything);
    for (std::size_t i = 0; i < std::size(words); ++i)
        for (int position = 0; position < 32; ++position) {
            CpuidWords lacking = full;
            lacking.*words[i] &= ~(std::uint32_t{1} << position);
            EXPECT_EQ(FeaturesOf(lacking), everything & ~LostWithout(words[i], position))
                << "word " << i << ", bit " << position;
        }
}

TEST(Cpuid, NothingSaidIsNoFeature) {
    EXPECT_EQ(FeaturesOf({}), cpu::none);
}

} // namespace
