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

} // namespace emulated

#define _mm256_alignr_epi64(a, b, words) emulated::AlignWords(a, b, words)
#define _mm512_shuffle_i64x2(a, b, control) emulated::ShuffleLanes(a, b, control)
