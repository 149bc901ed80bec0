// SPDX-License-Identifier: MIT
// Skein-1024 with AVX-512 in vectors of four words: a rotation is one instruction. No vector is wider, not even in
// the key schedule, because a wider one takes a third of the units away from all that are on their way.
//
// A load from words that two stores have just written waits until both are in the cache. The subkeys of the first
// rounds are therefore put together in registers: V(0), V(1), W(0) and W(1) are the chaining value as it stands, and
// V(2), V(3), W(2) and W(3) one instruction each.
#include "hash/kernels/Isa.h"

#define ISA_SKEIN1024 ISA_AVX512
#include "hash/kernels/Skein1024_X86Rounds.h"

namespace fyrn::kernels {
namespace {

struct alignas(32) Key {
    __m256i v[4], w[4];
    Word words[21]; // in steps of two
};

// Every word of the result is the exclusive or of all words of the state.
ISA_AVX512 ALWAYS_INLINE __m256i XorOfWords(const State& state) {
    const __m256i four =
        _mm256_xor_si256(_mm256_xor_si256(state.ec, state.ed), _mm256_xor_si256(state.oa, state.ob));
    const __m256i two = _mm256_xor_si256(four, _mm256_permute4x64_epi64(four, 0x4e));
    return _mm256_xor_si256(two, _mm256_shuffle_epi32(two, 0x4e));
}

ISA_AVX512 ALWAYS_INLINE void Expand(Key& key, const State& chain) {
    const __m256i parity =
        _mm256_xor_si256(XorOfWords(chain), _mm256_set1_epi64x(static_cast<long long>(threefish::keyParity)));
    const __m256i nextV = _mm256_set_epi64x(1, 3, 4, 2);
    key.v[0] = chain.ec;
    key.v[1] = chain.oa;
    key.v[2] = _mm256_permutex2var_epi64(chain.ec, nextV, chain.ed);
    key.v[3] = _mm256_permutex2var_epi64(chain.oa, nextV, chain.ob);
    key.w[0] = chain.ed;
    key.w[1] = chain.ob;
    key.w[2] = _mm256_alignr_epi64(parity, chain.ed, 1);
    key.w[3] = _mm256_alignr_epi64(chain.ec, chain.ob, 1);

    constexpr int inOrder = 0x78; // k0 k6 k2 k4 to k0 k2 k4 k6
    const __m256i firstEven = _mm256_permute4x64_epi64(chain.ec, inOrder);
    Store(key.words, firstEven);
    Store(key.words + 4, chain.ed);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(key.words + 8), _mm256_castsi256_si128(parity));
    Store(key.words + 9, _mm256_permute4x64_epi64(chain.oa, inOrder));
    Store(key.words + 13, chain.ob);
    Store(key.words + 17, firstEven);
}

template <int j>
ISA_AVX512 ALWAYS_INLINE __m256i V(const Key& key) {
    if constexpr (j < 4)
        return key.v[j];
    else
        return _mm256_permute4x64_epi64(Load(key.words + Place(j)), 0x9c);
}

template <int j>
ISA_AVX512 ALWAYS_INLINE __m256i W(const Key& key) {
    if constexpr (j < 4)
        return key.w[j];
    else
        return Load(key.words + Place(j + 8));
}

ISA_AVX512 ALWAYS_INLINE void Mix(__m256i& even, __m256i& odd, const Word left[4], const Word*) {
    even = _mm256_add_epi64(even, odd);
    odd = _mm256_xor_si256(_mm256_rolv_epi64(odd, Load(left)), even);
}

} // namespace

ISA_AVX512 void Skein1024_Blocks_X86Avx512(Word* words, Word tweak[2], const std::uint8_t* blocks,
                                           std::size_t count, Word added) {
    AbsorbBlocks<Key>(words, tweak, blocks, count, added);
}

} // namespace fyrn::kernels
