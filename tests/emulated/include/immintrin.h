// SPDX-License-Identifier: MIT
// Stands in for the compiler's header of the same name where kernels are emulated: the same intrinsics as functions
// in plain C++ that work out one lane after the other. Nearly all come from SIMDe; what that lacks is below.
#pragma once

#define SIMDE_ENABLE_NATIVE_ALIASES
#include <simde/x86/avx512.h>
#include <simde/x86/clmul.h>
#include <simde/x86/gfni.h>

#if defined(SIMDE_X86_AVX_NATIVE)
#    error "the compiler may use newer instructions itself, so nothing would be emulated"
#endif

#include "tests/emulated/Sources.h"

#include <cstdint>
#include <cstring>

using __mmask8 = simde__mmask8;

namespace emulated {

// Every kernel source that is compiled with this header says so when the program starts.
static const bool noted = NoteSource(__BASE_FILE__);

// The words of a vector.
template <class Vector>
struct Words {
    static constexpr unsigned count = sizeof(Vector) / sizeof(std::uint64_t);
    std::uint64_t word[count];

    explicit Words(const Vector& vector) { std::memcpy(word, &vector, sizeof word); }
    Vector Get() const {
        Vector vector;
        std::memcpy(&vector, word, sizeof word);
        return vector;
    }
};

// Two 128-bit lanes of `a`, then two of `b`, each chosen by two bits of `control`.
inline __m512i ShuffleLanes(__m512i a, __m512i b, int control) {
    const Words<__m512i> from[2] = {Words(a), Words(b)};
    Words<__m512i> to(a);
    for (int lane = 0; lane < 4; ++lane)
        for (int half = 0; half < 2; ++half)
            to.word[2 * lane + half] = from[lane / 2].word[2 * (control >> 2 * lane & 3) + half];
    return to.Get();
}

// The words of `a` behind those of `b`, less the lowest `words`.
inline __m256i AlignWords(__m256i a, __m256i b, unsigned words) {
    const Words<__m256i> from[2] = {Words(b), Words(a)};
    Words<__m256i> to(a);
    for (unsigned i = 0; i < 4; ++i)
        to.word[i] = from[(i + words) / 4].word[(i + words) % 4];
    return to.Get();
}

// The words whose bits are set, and zeros. No others are read.
inline __m512i LoadWords(unsigned mask, const void* memory) {
    Words<__m512i> to(simde_mm512_setzero_si512());
    for (unsigned i = 0; i < 8; ++i) {
        if ((mask >> i & 1) != 0)
            std::memcpy(&to.word[i], static_cast<const std::uint64_t*>(memory) + i, 8);
    }
    return to.Get();
}

// Stores the words whose bits are set.
inline void StoreWords(void* memory, unsigned mask, __m512i vector) {
    const Words<__m512i> from(vector);
    for (unsigned i = 0; i < 8; ++i) {
        if ((mask >> i & 1) != 0)
            std::memcpy(static_cast<std::uint64_t*>(memory) + i, &from.word[i], 8);
    }
}

// Two words and zeros.
inline __m512i ZeroExtend(__m128i low) {
    Words<__m512i> to(simde_mm512_setzero_si512());
    std::memcpy(to.word, &low, sizeof low);
    return to.Get();
}

} // namespace emulated

#define _mm256_alignr_epi64(a, b, words) emulated::AlignWords(a, b, words)
#define _mm512_mask_storeu_epi64(memory, mask, vector) emulated::StoreWords(memory, mask, vector)
#define _mm512_maskz_loadu_epi64(mask, memory) emulated::LoadWords(mask, memory)
#define _mm512_zextsi128_si512(low) emulated::ZeroExtend(low)
#define _mm512_shuffle_i64x2(a, b, control) emulated::ShuffleLanes(a, b, control)
