// SPDX-License-Identifier: MIT
// Skein-1024 with AVX2. A rotation is two shifts, each by a vector of counts.
#include "hash/kernels/Isa.h"

#define ISA_SKEIN1024 ISA_AVX2
#include "hash/kernels/Skein1024_X86Rounds.h"

namespace fyrn::kernels {
namespace {

struct alignas(32) Key {
    Word words[21]; // in steps of two
};

ISA_AVX2 ALWAYS_INLINE Word XorOfWords(const State& state) {
    const __m256i four =
        _mm256_xor_si256(_mm256_xor_si256(state.ec, state.ed), _mm256_xor_si256(state.oa, state.ob));
    const __m128i two = _mm_xor_si128(_mm256_castsi256_si128(four), _mm256_extracti128_si256(four, 1));
    return static_cast<Word>(_mm_cvtsi128_si64(two) ^ _mm_extract_epi64(two, 1));
}

ISA_AVX2 ALWAYS_INLINE void Expand(Key& key, const State& chain) {
    constexpr int inOrder = 0x78; // k0 k6 k2 k4 to k0 k2 k4 k6
    const __m256i firstEven = _mm256_permute4x64_epi64(chain.ec, inOrder);
    Store(key.words, firstEven);
    Store(key.words + 4, chain.ed);
    key.words[8] = threefish::keyParity ^ XorOfWords(chain);
    Store(key.words + 9, _mm256_permute4x64_epi64(chain.oa, inOrder));
    Store(key.words + 13, chain.ob);
    Store(key.words + 17, firstEven);
}

template <int j>
ISA_AVX2 ALWAYS_INLINE __m256i V(const Key& key) {
    return _mm256_permute4x64_epi64(Load(key.words + Place(j)), 0x9c);
}

template <int j>
ISA_AVX2 ALWAYS_INLINE __m256i W(const Key& key) {
    return Load(key.words + Place(j + 8));
}

ISA_AVX2 ALWAYS_INLINE void Mix(__m256i& even, __m256i& odd, const Word left[4], const Word right[4]) {
    even = _mm256_add_epi64(even, odd);
    odd = _mm256_or_si256(_mm256_sllv_epi64(odd, Load(left)), _mm256_srlv_epi64(odd, Load(right)));
    odd = _mm256_xor_si256(odd, even);
}

} // namespace

ISA_AVX2 void Skein1024_Blocks_X86Avx2(Word* words, Word tweak[2], const std::uint8_t* blocks,
                                       std::size_t count, Word added) {
    AbsorbBlocks<Key>(words, tweak, blocks, count, added);
}

} // namespace fyrn::kernels
